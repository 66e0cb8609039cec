#include "shared/confparser.h"

#include "objectmodel/value/decodedtext.h"

#include "shared/environment.h"
#include "shared/text/expandreferences.h"

#include <QFile>
#include <QFileInfo>

namespace Morvex {
namespace {

// Characters that the references of a whole file may add; beyond this they stay as they are.
const qint64 maxGrowth = 32 * 1024 * 1024;

} // namespace

// The line counter goes up with each assignment only, and lineStart moves with it: messages count
// neither blank lines nor comments.
struct ConfParser::Position
{
    QString text;
    int index = 0;
    int line = 1;
    int lineStart = 0;

    bool atEnd() const { return index >= text.size(); }
    QChar current() const { return text.at(index); }
    bool atNewline() const { return current() == QLatin1Char('\n'); }
    bool atBlank() const { return current() == QLatin1Char(' ') || current() == QLatin1Char('\t'); }

    void eatWhitespace()
    {
        while (!atEnd() && atBlank())
            ++index;
    }

    void eatWhitespaceAndNewline()
    {
        while (!atEnd() && (atBlank() || atNewline()))
            ++index;
    }

    QString takeKey()
    {
        const int start = index;
        while (!atEnd() && !atBlank() && !atNewline() && current() != QLatin1Char('='))
            ++index;
        return text.mid(start, index - start);
    }

    QString takeLine()
    {
        const int start = index;
        const int newline = text.indexOf(QLatin1Char('\n'), index);
        index = newline < 0 ? text.size() : newline;
        return text.mid(start, index - start);
    }

    void skipLine()
    {
        takeLine();
        if (!atEnd())
            ++index;
    }
};

ConfParser::ConfParser(const QString &fileName, bool splitValues)
    : m_splitValues(splitValues)
    , m_growthLeft(maxGrowth)
{
    parse(fileName);
}

void ConfParser::parse(const QString &fileName)
{
    QFile file(fileName);
    // A pipe would keep the reader waiting.
    if (!QFileInfo(fileName).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        m_error = QStringLiteral("Couldn't open '") + fileName + QStringLiteral("' for reading.");
        return;
    }
    Position position;
    position.text = decodedUtf8(file.readAll());
    for (;;) {
        position.eatWhitespaceAndNewline();
        if (position.atEnd())
            return;
        if (position.current() == QLatin1Char('#'))
            position.skipLine();
        else if (!parseAssignment(fileName, position))
            return;
    }
}

bool ConfParser::parseAssignment(const QString &fileName, Position &position)
{
    const QString key = position.takeKey();
    position.eatWhitespace();
    if (position.atEnd()) {
        m_error = fileName + QStringLiteral(": Unexpected end of file (key without a value)");
        return false;
    }
    if (position.current() != QLatin1Char('=')) {
        m_error = fileName + QStringLiteral(": Syntax error in line ") +
                  QString::number(position.line) + QStringLiteral(", column ") +
                  QString::number(position.index - position.lineStart + 1) +
                  QStringLiteral(". Expected '='");
        return false;
    }
    ++position.index;
    position.eatWhitespace();
    QString value = position.takeLine();
    if (!position.atEnd()) {
        ++position.line;
        ++position.index;
    }
    if (!evaluate(value))
        qWarning("Morvex::ConfParser: %s: the references in the value of '%s' are kept as they "
                 "are, they add too many characters",
                 qUtf8Printable(fileName), qUtf8Printable(key));
    m_entries.insert(key, split(value));
    position.lineStart = position.index;
    return true;
}

bool ConfParser::evaluate(QString &value)
{
    const auto lookUp = [this](const QString &name) {
        const auto entry = m_entries.constFind(name);
        if (entry != m_entries.constEnd())
            return entry->value(0);
        return QString::fromStdString(Environment::getVariable(name.toStdString()));
    };
    const qint64 allowed = qMin(m_growthLeft, maxExpansionGrowth);
    const qint64 growth = expandReferences(value, lookUp, DollarPair::Kept, allowed);
    m_growthLeft -= growth;
    return growth <= allowed || !value.contains(QLatin1String("$("));
}

QStringList ConfParser::split(const QString &value) const
{
    if (!m_splitValues)
        return {value};
    QStringList words = value.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    const QLatin1Char quote('"');
    for (QString &word : words) {
        // A lone quote character is begin and end in one, and goes too.
        if (word.startsWith(quote) && word.endsWith(quote))
            word = word.mid(1, word.size() - 2);
    }
    return words;
}

QStringList ConfParser::splitArgs(const QString &text)
{
    QStringList arguments;
    QString argument;
    bool inQuotes = false;
    for (int i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (character == QLatin1Char('"')) {
            inQuotes = !inQuotes;
        } else if (character != QLatin1Char(' ') || inQuotes) {
            argument += character;
        } else if (i > 0 && text.at(i - 1) == QLatin1Char('\\')) {
            argument.chop(1);
            argument += character;
        } else if (!argument.isEmpty()) {
            arguments += argument;
            argument.clear();
        }
    }
    if (!argument.isEmpty())
        arguments += argument;
    return arguments;
}

Config::Config(const QMap<QString, QStringList> &entries)
    : m_entries(entries)
{
}

void Config::setSettingsGroup(const QString &group)
{
    m_settingsGroup = group == QLatin1String("Default") ? QString() : group;
}

QString Config::localKey(const QString &key) const
{
    return m_settingsGroup.isEmpty() ? key : m_settingsGroup + QLatin1Char('/') + key;
}

QStringList Config::globalEntries() const
{
    QStringList keys;
    for (auto entry = m_entries.begin(); entry != m_entries.end(); ++entry) {
        if (!entry.key().contains(QLatin1Char('/')))
            keys += entry.key();
    }
    return keys;
}

bool Config::hasGlobalEntry(const QString &key) const
{
    return m_entries.contains(key);
}

QString Config::globalEntry(const QString &key) const
{
    return globalListEntry(key).join(QLatin1Char(' '));
}

QStringList Config::globalListEntry(const QString &key) const
{
    return m_entries.value(key);
}

bool Config::hasEntry(const QString &key) const
{
    return hasGlobalEntry(localKey(key));
}

QString Config::entry(const QString &key) const
{
    return globalEntry(localKey(key));
}

QStringList Config::listEntry(const QString &key) const
{
    return globalListEntry(localKey(key));
}

bool Config::boolEntry(const QString &key) const
{
    const auto entry = m_entries.constFind(localKey(key));
    if (entry == m_entries.constEnd())
        return false;
    // A line "KEY =" switches the setting on.
    if (entry->isEmpty())
        return true;
    if (entry->size() > 1)
        return false;
    const QString word = entry->constFirst().toLower();
    if (word == QLatin1String("true") || word == QLatin1String("on") ||
        word == QLatin1String("yes"))
        return true;
    return word.toInt() != 0;
}

void Config::setGlobalEntry(const QString &key, const QStringList &value)
{
    m_entries.insert(key, value);
}

void Config::setEntry(const QString &key, const QStringList &value)
{
    setGlobalEntry(localKey(key), value);
}

void Config::setBoolEntry(const QString &key, bool value)
{
    setEntry(key, {value ? QStringLiteral("1") : QStringLiteral("0")});
}

} // namespace Morvex
