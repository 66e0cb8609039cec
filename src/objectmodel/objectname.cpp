#include "objectmodel/objectname.h"

#include <QStringList>

namespace Morvex {
namespace {

using PropertyValue = ObjectName::PropertyValue;

// Names within names: more levels than any window has, and few enough for the stack.
const int maxDepth = 100;

bool isIdentifier(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_') ||
           character == QLatin1Char('.') || character == QLatin1Char('-');
}

bool isOccurrence(const PropertyValue &value)
{
    return value.kind == PropertyValue::EXACT && value.text.toInt() >= 1;
}

class Parser
{
public:
    explicit Parser(const QString &text)
        : m_text(text)
    {
    }

    bool parse(QMap<QString, PropertyValue> *properties)
    {
        if (!parseName(properties, 0))
            return false;
        return atEnd() || fail(QStringLiteral("nothing may follow the closing \"}\""));
    }

    QString error() const { return m_error; }

private:
    bool atEnd() const { return m_position >= m_text.size(); }
    bool isAt(char character) const
    {
        return !atEnd() && m_text.at(m_position) == QLatin1Char(character);
    }

    // A backslash before any other character stands for itself, as in "\d".
    bool isEscapable(int position) const
    {
        return position < m_text.size() && (m_text.at(position) == QLatin1Char('\'') ||
                                            m_text.at(position) == QLatin1Char('\\'));
    }

    bool take(char character)
    {
        if (!isAt(character))
            return false;
        ++m_position;
        return true;
    }

    void skipBlanks()
    {
        while (!atEnd() && m_text.at(m_position).isSpace())
            ++m_position;
    }

    bool fail(const QString &what)
    {
        m_error = QStringLiteral("%1, at character %2").arg(what, QString::number(m_position + 1));
        return false;
    }

    bool parseName(QMap<QString, PropertyValue> *properties, int depth)
    {
        if (depth > maxDepth)
            return fail(QStringLiteral("the name is nested too deeply"));
        if (!take('{'))
            return fail(QStringLiteral("\"{\" is missing"));
        for (skipBlanks(); !take('}'); skipBlanks()) {
            if (atEnd())
                return fail(QStringLiteral("\"}\" is missing"));
            if (!parseProperty(properties, depth))
                return false;
        }
        return !properties->isEmpty() || fail(QStringLiteral("the name has no properties"));
    }

    bool parseProperty(QMap<QString, PropertyValue> *properties, int depth)
    {
        const int start = m_position;
        while (!atEnd() && isIdentifier(m_text.at(m_position)))
            ++m_position;
        const QString key = m_text.mid(start, m_position - start);
        if (key.isEmpty())
            return fail(QStringLiteral("a property name is missing"));
        if (properties->contains(key))
            return fail(QStringLiteral("property '%1' is given twice").arg(key));
        PropertyValue value;
        if (!parseOperator(&value.kind))
            return false;
        if (ObjectName::isRelation(key) && value.kind != PropertyValue::EXACT)
            return fail(QStringLiteral("'%1' takes a name, with \"=\"").arg(key));
        skipBlanks();
        if (!parseValue(&value, depth))
            return false;
        if (key == QLatin1String("occurrence") && !isOccurrence(value))
            return fail(QStringLiteral("'occurrence' must be a number, 1 or greater"));
        properties->insert(key, value);
        return true;
    }

    bool parseOperator(PropertyValue::Kind *kind)
    {
        skipBlanks();
        if (take('?'))
            *kind = PropertyValue::WILDCARD;
        else if (take('~'))
            *kind = PropertyValue::REGEXP;
        return take('=') || fail(QStringLiteral("\"=\", \"?=\" or \"~=\" is missing"));
    }

    bool parseValue(PropertyValue *value, int depth)
    {
        if (value->kind != PropertyValue::EXACT || !isAt('{'))
            return parseText(&value->text);
        QMap<QString, PropertyValue> referenced;
        if (!parseName(&referenced, depth + 1))
            return false;
        value->kind = PropertyValue::REFERENCE;
        value->text = ObjectName(referenced).qualifiedName();
        return true;
    }

    bool parseText(QString *text)
    {
        if (!take('\''))
            return fail(QStringLiteral("a value in single quotes is missing"));
        while (!take('\'')) {
            if (isAt('\\') && isEscapable(m_position + 1))
                ++m_position;
            if (atEnd())
                return fail(QStringLiteral("the closing single quote is missing"));
            *text += m_text.at(m_position++);
        }
        return true;
    }

    const QString &m_text;
    int m_position = 0;
    QString m_error;
};

QString quoted(QString text)
{
    text.replace(QLatin1Char('\\'), QLatin1String("\\\\"));
    text.replace(QLatin1Char('\''), QLatin1String("\\'"));
    return QLatin1Char('\'') + text + QLatin1Char('\'');
}

QString valueText(const PropertyValue &value)
{
    switch (value.kind) {
    case PropertyValue::EXACT:
        return QLatin1Char('=') + quoted(value.text);
    case PropertyValue::WILDCARD:
        return QLatin1String("?=") + quoted(value.text);
    case PropertyValue::REGEXP:
        return QLatin1String("~=") + quoted(value.text);
    case PropertyValue::REFERENCE:
        break;
    }
    return QLatin1Char('=') +
           (value.text.startsWith(QLatin1Char('{')) ? value.text : quoted(value.text));
}

} // namespace

ObjectName::ObjectName(const QString &text)
    : m_text(text.trimmed())
{
    if (!m_text.startsWith(QLatin1Char('{')))
        return;
    Parser parser(m_text);
    if (!parser.parse(&m_properties)) {
        m_error = parser.error();
        m_properties.clear();
    }
}

ObjectName::ObjectName(const QMap<QString, PropertyValue> &properties)
    : m_properties(properties)
{
}

bool ObjectName::isSymbolicName(const QString &text)
{
    return text.startsWith(QLatin1Char(':'));
}

bool ObjectName::isRelation(const QString &property)
{
    return property == QLatin1String("parent") || property == QLatin1String("container") ||
           property == QLatin1String("window");
}

QString ObjectName::qualifiedName() const
{
    if (m_properties.isEmpty())
        return m_text;
    QStringList parts;
    for (auto it = m_properties.begin(); it != m_properties.end(); ++it)
        parts += it.key() + valueText(it.value());
    return QLatin1Char('{') + parts.join(QLatin1Char(' ')) + QLatin1Char('}');
}

} // namespace Morvex
