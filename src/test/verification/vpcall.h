#pragma once

#include "objectmodel/object.h"
#include "test/testresult.h"
#include "test/verification/vpresultlogger.h"

#include <QDomDocument>
#include <QFileInfo>
#include <QString>

namespace Morvex {

class ObjectNameResolverInterface;
class RunnerInterface;
class TestDataRecord;

/// What the steps of one verification share.
struct VPCall
{
    const QString &name;
    const QFileInfo &file;
    VPResultLogger &logger;
    RunnerInterface *runner;
    ObjectNameResolverInterface *resolver;
    const VerificationOptions &options;
    /// Null for none.
    const TestDataRecord *record;
    /// Whether all checks are expected to fail, whatever the file says.
    bool expectFail;
    /// Whether the file is to be updated with what differs.
    bool learn;
    QDomDocument document = QDomDocument();
    int version = 0;
    /// NO_VP for a file of an unknown type.
    TestResult::VPType type = TestResult::NO_VP;
    /// Whether the document has learned something.
    bool updated = false;

    void addResult(TestResult::ResultType resultType, const QString &message,
                   const QString &details);

    /// Adds an ERROR, whose message begins with the name of the verification point. Returns false,
    /// the outcome of the check.
    bool addError(const QString &message, const QString &details);

    /// Null when there is not exactly one object of that name, for which an ERROR is added.
    SharedPtr<Object> resolve(const QString &objectName);
};

} // namespace Morvex
