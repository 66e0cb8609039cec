#include "test/verification/vpcall.h"

#include "test/objectnameresolverinterface.h"

namespace Morvex {

void VPCall::addResult(TestResult::ResultType resultType, const QString &message,
                       const QString &details)
{
    logger.addResult(resultType, message, details, name, type, file);
}

bool VPCall::addError(const QString &message, const QString &details)
{
    addResult(TestResult::ERROR, name + message, details);
    return false;
}

SharedPtr<Object> VPCall::resolve(const QString &objectName)
{
    QString error;
    const SharedPtr<Object> object = resolver->resolve(objectName, &error);
    if (!object)
        addError(QStringLiteral(": No such object '%1'").arg(objectName), error);
    return object;
}

} // namespace Morvex
