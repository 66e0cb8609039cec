#include "test/report/junitshared.h"

#include <QHostInfo>

namespace Morvex {
namespace {

QString keyOf(const QString &className, const QString &name)
{
    return className + QChar(QChar::Null) + name;
}

} // namespace

bool isJUnitFailure(TestResult::ResultType type)
{
    return type == TestResult::FAIL || type == TestResult::XPASS;
}

bool isJUnitError(TestResult::ResultType type)
{
    return type == TestResult::FATAL || type == TestResult::ERROR;
}

QString junitHostName()
{
    const QString name = QHostInfo::localHostName();
    return name.isEmpty() ? QStringLiteral("localhost") : name;
}

QString junitTimestamp(const QDateTime &time)
{
    const QDateTime valid = time.isValid() ? time : QDateTime::currentDateTimeUtc();
    // Not by a format of our own, which would take the digits of the locale.
    const QString text = valid.toUTC().toString(Qt::ISODate);
    return text.left(text.indexOf(QLatin1Char('Z')));
}

QString junitSeconds(qint64 milliseconds)
{
    return QString::number(static_cast<double>(qMax(milliseconds, qint64(0))) / 1000, 'f', 3);
}

QMap<QString, QString> junitProperties(const TestResult::Entry &start)
{
    QMap<QString, QString> properties{{QStringLiteral("summary"), start.summary}};
    if (!start.description.isEmpty())
        properties.insert(QStringLiteral("description"), start.description);
    if (!start.line.fileName().isEmpty())
        properties.insert(QStringLiteral("directory"), start.line.fileName());
    return properties;
}

XmlElement junitPropertiesElement(const QMap<QString, QString> &properties)
{
    XmlElement element(QLatin1String("properties"));
    for (auto it = properties.cbegin(); it != properties.cend(); ++it) {
        XmlElement property(QLatin1String("property"));
        property.addAttribute(QLatin1String("name"), it.key());
        property.addAttribute(QLatin1String("value"), it.value());
        element.addChild(std::move(property));
    }
    return element;
}

QString JUnitNames::unique(const QString &className, const QString &name)
{
    const QString key = keyOf(className, name);
    if (m_given.contains(key))
        return numberedFrom(2, className, name + QLatin1Char('_'));
    m_given.insert(key);
    return name;
}

QString JUnitNames::numbered(const QString &className, const QString &base)
{
    return numberedFrom(1, className, base);
}

QString JUnitNames::numberedFrom(int first, const QString &className, const QString &base)
{
    const QString key = keyOf(className, base);
    int number = m_numbers.value(key, first - 1);
    QString given;
    do
        given = key + QString::number(++number);
    while (m_given.contains(given));
    m_given.insert(given);
    m_numbers.insert(key, number);
    return base + QString::number(number);
}

} // namespace Morvex
