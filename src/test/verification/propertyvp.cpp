#include "test/testvp.h"

#include "objectmodel/value/decodedtext.h"

#include "objectmodel/inspector.h"
#include "objectmodel/value/propertypath.h"
#include "shared/testdata.h"
#include "test/verification/vpcall.h"
#include "test/verification/vpdocument.h"

#include <optional>

namespace Morvex {
namespace {

// Nothing when the file has no value.
std::optional<QString> storedValue(const QDomElement &element, int version)
{
    if (version < 2)
        return element.firstChild().toText().data();
    const QDomNode value = element.elementsByTagName(QStringLiteral("base64EncodedValue")).item(0);
    if (value.isNull())
        return std::nullopt;
    return decodedUtf8(QByteArray::fromBase64(value.toElement().text().toLatin1()));
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

// What a property has to be, and how messages about it begin.
struct Expectation
{
    QString value;
    QString prefix;
};

// Nothing when there is none, for which an ERROR is added.
std::optional<Expectation> expectationOf(const QDomElement &element, VPCall &call)
{
    const std::optional<QString> stored = storedValue(element, call.version);
    if (!stored) {
        call.addError(QStringLiteral(": Could not read property value"),
                      QStringLiteral("Value for property '%1' not readable")
                          .arg(element.attribute(QStringLiteral("property"))));
        return std::nullopt;
    }
    if (element.attribute(QStringLiteral("valueType")) != QLatin1String("DataField"))
        return Expectation{*stored, call.name};
    if (!call.record || !call.record->dataSet()) {
        call.addError(QStringLiteral(": Error doing object property comparison"),
                      QStringLiteral("Comparison failed because invalid test data record was "
                                     "passed for a data field"));
        return std::nullopt;
    }
    if (call.record->dataSet()->fieldIndex(*stored) < 0)
        qWarning("Morvex: '%s' has no field '%s', whose value a verification point expects; an "
                 "empty text is expected",
                 qUtf8Printable(call.record->dataSet()->dataName()), qUtf8Printable(*stored));
    return Expectation{call.record->valueAsString(*stored),
                       call.name + fieldPrefix(*call.record, *stored)};
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

// Null when there is none, for which an ERROR is added.
SharedPtr<Object> actualObject(const QDomElement &element, VPCall &call)
{
    const QString objectName = element.attribute(QStringLiteral("object"));
    const SharedPtr<Object> object = call.resolve(objectName);
    if (!object)
        return {};
    MissingProperty missing;
    const SharedPtr<Object> actual = followProperties(
        object, propertySteps(element.attribute(QStringLiteral("property"))), &missing);
    if (!actual)
        call.addError(QStringLiteral(": No such property"),
                      QStringLiteral("Could not lookup property '%1' on object '%2'")
                          .arg(missing.name, objectName));
    return actual;
}

} // namespace

bool TestVP::performPropertyVerification(const QDomElement &element, VPCall &call) const
{
    const std::optional<Expectation> expected = expectationOf(element, call);
    const SharedPtr<Object> actual = expected ? actualObject(element, call) : SharedPtr<Object>();
    if (!actual)
        return false;
    const SharedPtr<Object> wanted =
        expectedObject(element.attribute(QStringLiteral("type")), expected->value);
    // Both ways, as the two may come from different parts of the model.
    const bool passed = wanted && (actual->compare(wanted) || wanted->compare(actual));
    const bool expectFail = call.expectFail || hasExpectedFailure(element);
    const QString path = element.attribute(QStringLiteral("object")) + QLatin1Char('.') +
                         element.attribute(QStringLiteral("property"));
    call.addResult(TestResult::verificationType(passed, expectFail),
                   (passed ? QStringLiteral("%1: Object property comparison of '%2' passed")
                           : QStringLiteral("%1: Object property comparison of '%2' failed"))
                       .arg(expected->prefix, path),
                   (passed ? QStringLiteral("'%1' and '%2' are equal")
                           : QStringLiteral("'%1' and '%2' are not equal"))
                       .arg(actual->valueText(), expected->value));
    return passed != expectFail;
}

} // namespace Morvex
