#include "test/testvp.h"

#include "objectmodel/class.h"
#include "objectmodel/inspector.h"
#include "objectmodel/property.h"
#include "shared/testdata.h"
#include "test/objectnameresolverinterface.h"
#include "test/verification/vpdocument.h"
#include "test/verification/vpresultlogger.h"

#include <QDomElement>

#include <optional>

namespace Morvex {
namespace {

// Nothing when the file has no value.
std::optional<QString> valueOf(const QDomElement &element, int version)
{
    if (version < 2)
        return element.firstChild().toText().data();
    const QDomNode value = element.elementsByTagName(QStringLiteral("base64EncodedValue")).item(0);
    if (value.isNull())
        return std::nullopt;
    return QString::fromUtf8(QByteArray::fromBase64(value.toElement().text().toLatin1()));
}

QString fieldPrefix(const TestDataRecord &record, const QString &column)
{
    const TestDataSet *dataSet = record.dataSet();
    const TestDataRecord *header = dataSet->header();
    return QStringLiteral(" [%1:%2:%3]")
        .arg(QFileInfo(dataSet->dataName()).fileName(),
             header ? header->valueAsString(column) : QString(),
             QString::number(qint64(record.index()) + 1));
}

// Null without an application.
SharedPtr<Object> expectedObject(const QString &type, const QString &value)
{
    Inspector *inspector = Inspector::self();
    if (!inspector)
        return {};
    if (type == QLatin1String("int") || type == QLatin1String("long"))
        return inspector->makeInt(value.toInt());
    if (type == QLatin1String("double"))
        return inspector->makeDouble(value.toDouble());
    if (type == QLatin1String("bool"))
        return inspector->makeBool(value.toLower() == QLatin1String("true"));
    return inspector->makeString(value.toUtf8());
}

SharedPtr<Object> propertyOf(const SharedPtr<Object> &object, const QString &name)
{
    const Class *objectClass = object->objectClass();
    const Property *property = objectClass ? objectClass->property(name) : nullptr;
    return property ? property->get(object) : SharedPtr<Object>();
}

// Null when a step can't be taken; missing is then its name.
SharedPtr<Object> walk(SharedPtr<Object> object, const QString &path, QString *missing)
{
    for (const QString &step : path.split(QLatin1Char('.'), Qt::SkipEmptyParts)) {
        object = propertyOf(object, step);
        if (!object) {
            *missing = step;
            break;
        }
    }
    return object;
}

} // namespace

bool TestVP::performPropertyVerification(const QDomElement &element, const TestDataRecord *record,
                                         int version, VPResultLogger *logger,
                                         ObjectNameResolverInterface *resolver,
                                         bool expectFail) const
{
    const QString objectName = element.attribute(QStringLiteral("object"));
    const QString path = element.attribute(QStringLiteral("property"));
    const std::optional<QString> stored = valueOf(element, version);
    const auto fail = [&](const QString &message, const QString &details) {
        addResult(logger, TestResult::ERROR, m_name + message, details, TestResult::PROPERTY_VP);
        return false;
    };
    if (!stored)
        return fail(QStringLiteral(": Could not read property value"),
                    QStringLiteral("Value for property '%1' not readable").arg(path));
    expectFail = expectFail || hasExpectedFailure(element);

    QString prefix = m_name;
    QString expected = *stored;
    if (element.attribute(QStringLiteral("valueType")) == QLatin1String("DataField")) {
        if (!record)
            return fail(QStringLiteral(": Error doing object property comparison"),
                        QStringLiteral("Comparison failed because invalid test data record was "
                                       "passed for a data field"));
        prefix += fieldPrefix(*record, expected);
        expected = record->valueAsString(expected);
    }

    const SharedPtr<Object> object = resolve(logger, resolver, objectName, TestResult::PROPERTY_VP);
    if (!object)
        return false;
    QString missing;
    const SharedPtr<Object> actual = walk(object, path, &missing);
    if (!actual)
        return fail(QStringLiteral(": No such property"),
                    QStringLiteral("Could not lookup property '%1' on object '%2'")
                        .arg(missing, objectName));

    const SharedPtr<Object> wanted =
        expectedObject(element.attribute(QStringLiteral("type")), expected);
    // Both ways, as the two may come from different parts of the model.
    const bool passed = wanted && (actual->compare(wanted) || wanted->compare(actual));
    const QString shownPath = objectName + QLatin1Char('.') + path;
    addResult(logger, verificationType(passed, expectFail),
              (passed ? QStringLiteral("%1: Object property comparison of '%2' passed")
                      : QStringLiteral("%1: Object property comparison of '%2' failed"))
                  .arg(prefix, shownPath),
              (passed ? QStringLiteral("'%1' and '%2' are equal")
                      : QStringLiteral("'%1' and '%2' are not equal"))
                  .arg(actual->valueText(), expected),
              TestResult::PROPERTY_VP);
    return passed != expectFail;
}

} // namespace Morvex
