#include "shared/settings.h"

#include "shared/environment.h"
#include "shared/files/regularfile.h"
#include "shared/files/writefile.h"
#include "shared/text/expandreferences.h"
#include "shared/text/quotedtext.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>
#include <QVariant>

namespace Morvex {
namespace {

QString normalizeKey(const QString &key)
{
    const QLatin1Char slash('/');
    QString normalized = key;
    if (normalized.startsWith(slash))
        normalized.remove(0, 1);
    if (normalized.endsWith(slash))
        normalized.chop(1);
    normalized.replace(QLatin1Char('='), QLatin1Char('_'));
    normalized.replace(QLatin1String("//"), QLatin1String("/"));
    return normalized;
}

void expandEnvironmentVariables(QString &text)
{
    expandReferences(
        text,
        [](const QString &name) {
            return QString::fromStdString(Environment::getVariable(name.toStdString()));
        },
        DollarPair::IsOneDollar);
}

template <std::size_t size>
QString fileNameOf(int type, const char *const (&names)[size])
{
    const bool isKnown = type >= 0 && static_cast<std::size_t>(type) < size;
    return isKnown ? QString::fromLatin1(names[type]) : QString();
}

QString userFileName(UserSettings::UserSettingsType type)
{
    static const char *const names[] = {"server.ini", "webwrapper.ini", "tkwrapper.ini",
                                        "paths.ini",  "ocr.ini",        "quillbasecmd.ini"};
    return fileNameOf(type, names);
}

QString globalFileName(GlobalSettings::GlobalSettingsType type)
{
    static const char *const names[] = {"morvex.ini", "paths.ini"};
    return fileNameOf(type, names);
}

QString globalSettingsDir()
{
    static const std::string prefixVariable = "MORVEX_PREFIX";
    return QString::fromStdString(Environment::getVariable(prefixVariable)) + QLatin1String("/etc");
}

} // namespace

QString Settings::morvexSettingsDir()
{
    QString path = QString::fromStdString(Environment::getVariable("MORVEX_USER_SETTINGS_DIR"));
    if (path.isEmpty())
        path = QDir::homePath() + QLatin1String("/.morvex");
    QDir().mkpath(path);
    return path;
}

QString Settings::settingsDir()
{
    return morvexSettingsDir();
}

QString Settings::userSettingsDir()
{
    return morvexSettingsDir() + QLatin1String("/ver1");
}

QString Settings::defaultGroup()
{
    return QStringLiteral("General");
}

Settings::Settings(const QString &fileName)
    : m_fileName(fileName)
{
    parse();
}

Settings::Settings(const QString &dir, const QString &name)
    : Settings(dir + QLatin1Char('/') + name)
{
}

Settings::~Settings()
{
    if (m_dirty)
        flush();
}

void Settings::parse()
{
    QFile file(m_fileName);
    // A link that leads nowhere is not what the user meant.
    if (!file.exists() && !QFileInfo(m_fileName).isSymLink())
        return;
    if (!openRegularFile(&file, QIODevice::ReadOnly | QIODevice::Text).isEmpty()) {
        qWarning("Morvex::Settings::parse: could not open file `%s' for reading",
                 qUtf8Printable(m_fileName));
        return;
    }
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    Group *group = nullptr;
    QString groupName;
    QString line;
    while (stream.readLineInto(&line)) {
        line = line.trimmed();
        if (!line.isEmpty() && !line.startsWith(QLatin1Char('#')))
            parseLine(line, &group, &groupName);
    }
}

void Settings::parseLine(const QString &line, Group **group, QString *groupName)
{
    if (line.startsWith(QLatin1Char('['))) {
        *groupName = line.mid(1);
        if (groupName->endsWith(QLatin1Char(']')))
            groupName->chop(1);
        *group = &*m_groups.insert(*groupName, Group());
        return;
    }
    if (!*group) {
        qWarning("Morvex::Settings::parse: in file %s: line `%s' not in a group",
                 qUtf8Printable(m_fileName), qUtf8Printable(line));
        return;
    }
    const int separator = line.indexOf(QLatin1Char('='));
    if (separator < 0) {
        qWarning("Morvex::Settings::parse: in file %s: corrupted line `%s' in group `%s'",
                 qUtf8Printable(m_fileName), qUtf8Printable(line), qUtf8Printable(*groupName));
        return;
    }
    (*group)->insert(line.left(separator).trimmed(), line.mid(separator + 1));
}

bool Settings::hasGroup(const QString &group) const
{
    return m_groups.contains(group);
}

QStringList Settings::groupList() const
{
    return m_groups.keys();
}

bool Settings::readRawEntry(const QString &group, const QString &key, QString *value) const
{
    const auto entries = m_groups.constFind(group);
    if (entries == m_groups.constEnd())
        return false;
    const auto entry = entries->constFind(normalizeKey(key));
    if (entry == entries->constEnd())
        return false;
    if (value)
        *value = *entry;
    return true;
}

QString Settings::readEntry(const QString &group, const QString &key,
                            const QString &defaultValue) const
{
    QString text;
    if (!readRawEntry(group, key, &text) || !unquoteString(text))
        return defaultValue;
    if (m_expands)
        expandEnvironmentVariables(text);
    return text;
}

QStringList Settings::readListEntry(const QString &group, const QString &key,
                                    const QStringList &defaultValue) const
{
    QString text;
    QStringList list;
    if (!readRawEntry(group, key, &text) || !unquoteStringList(text, list))
        return defaultValue;
    if (m_expands) {
        for (QString &element : list)
            expandEnvironmentVariables(element);
    }
    return list;
}

int Settings::readNumEntry(const QString &group, const QString &key, int defaultValue) const
{
    QString text;
    bool isNumber = false;
    if (!readRawEntry(group, key, &text))
        return defaultValue;
    const int number = text.trimmed().toInt(&isNumber, 10);
    return isNumber ? number : defaultValue;
}

double Settings::readDoubleEntry(const QString &group, const QString &key,
                                 double defaultValue) const
{
    QString text;
    bool isNumber = false;
    if (!readRawEntry(group, key, &text))
        return defaultValue;
    const double number = text.trimmed().toDouble(&isNumber);
    return isNumber ? number : defaultValue;
}

bool Settings::readBoolEntry(const QString &group, const QString &key, bool defaultValue) const
{
    QString text;
    if (!readRawEntry(group, key, &text))
        return defaultValue;
    text = text.trimmed();
    if (text.endsWith(QLatin1Char('"')))
        text.chop(1);
    if (text.startsWith(QLatin1Char('"')))
        text.remove(0, 1);
    bool isNumber = false;
    const int number = text.toInt(&isNumber, 10);
    if (isNumber)
        return number != 0;
    const QString word = text.toUpper();
    if (word == QLatin1String("TRUE"))
        return true;
    return word == QLatin1String("FALSE") ? false : defaultValue;
}

QStringList Settings::subkeyList(const QString &group, const QString &key) const
{
    return subkeyOrEntryList(group, key, true);
}

QStringList Settings::entryList(const QString &group, const QString &key) const
{
    return subkeyOrEntryList(group, key, false);
}

QStringList Settings::subkeyOrEntryList(const QString &group, const QString &key,
                                        bool subkeys) const
{
    QString prefix = normalizeKey(key);
    if (!prefix.isEmpty())
        prefix += QLatin1Char('/');
    const Group entries = m_groups.value(group);
    QStringList names;
    for (auto entry = entries.lowerBound(prefix);
         entry != entries.end() && entry.key().startsWith(prefix); ++entry) {
        const QString path = entry.key().mid(prefix.size());
        const int slash = path.indexOf(QLatin1Char('/'));
        if (subkeys != (slash >= 0))
            continue;
        names += path.left(slash);
    }
    // Each key repeats its subkey.
    names.removeDuplicates();
    return names;
}

void Settings::writeRawEntry(const QString &group, const QString &key, const QString &value)
{
    m_groups[group].insert(normalizeKey(key), value);
    m_dirty = true;
}

void Settings::writeEntry(const QString &group, const QString &key, const QString &value)
{
    writeRawEntry(group, key, quoted(value));
}

void Settings::writeEntry(const QString &group, const QString &key, const QStringList &value)
{
    QStringList texts;
    texts.reserve(value.size());
    for (const QString &element : value)
        texts += quoted(element);
    writeRawEntry(group, key, texts.join(QLatin1Char(',')));
}

void Settings::writeEntry(const QString &group, const QString &key, int value)
{
    writeRawEntry(group, key, QString::number(value));
}

void Settings::writeEntry(const QString &group, const QString &key, double value)
{
    writeRawEntry(group, key, QString::number(value, 'g', 6));
}

void Settings::writeEntry(const QString &group, const QString &key, bool value)
{
    writeRawEntry(group, key, QVariant(value).toString());
}

void Settings::removeEntry(const QString &group, const QString &key)
{
    const auto entries = m_groups.find(group);
    if (entries == m_groups.end()) {
        qWarning("Morvex::Settings::removeEntry: group '%s' not found in %s", qUtf8Printable(group),
                 qUtf8Printable(m_fileName));
        return;
    }
    entries->remove(normalizeKey(key));
}

bool Settings::flush()
{
    const QString dir = QFileInfo(m_fileName).path();
    if (!QDir().mkpath(dir)) {
        qWarning("Morvex::Settings::flush: could not create directory `%s'.", qUtf8Printable(dir));
        return false;
    }
    const FileWriteResult result = writeFileSafely(m_fileName, toText().toUtf8());
    if (result.outcome == FileWriteResult::NotOpened)
        qWarning("Morvex::Settings::flush: could not open file `%s' for writing",
                 qUtf8Printable(m_fileName));
    else if (result.outcome == FileWriteResult::NotWritten)
        qWarning("Morvex::Settings::flush: could not write file `%s': %s",
                 qUtf8Printable(m_fileName), qUtf8Printable(result.error));
    return result.outcome == FileWriteResult::Written;
}

QString Settings::toText() const
{
    QString text;
    for (auto group = m_groups.cbegin(); group != m_groups.cend(); ++group) {
        text += QLatin1Char('[') + group.key() + QLatin1String("]\n");
        for (auto entry = group->cbegin(); entry != group->cend(); ++entry)
            text += entry.key() + QLatin1String(" = ") + entry.value() + QLatin1Char('\n');
        text += QLatin1Char('\n');
    }
    return text;
}

bool Settings::unquoteString(QString &text) const
{
    QStringList strings;
    if (!unquoteStringList(text, strings))
        return false;
    if (strings.size() != 1) {
        qWarning("Morvex::Settings: entry is not a string in %s", qUtf8Printable(m_fileName));
        return false;
    }
    text = strings.constFirst();
    return true;
}

bool Settings::unquoteStringList(const QString &text, QStringList &out) const
{
    const QuotedTexts read = readQuoted(text);
    out += read.texts;
    if (!read.unknownEscape.isNull())
        warnOfEscape(read.unknownEscape);
    else if (read.isOpen)
        qWarning("Morvex::Settings: string not delimited by quotes in %s",
                 qUtf8Printable(m_fileName));
    return read.unknownEscape.isNull() && !read.isOpen;
}

void Settings::warnOfEscape(QChar character) const
{
    const uint code = character.unicode();
    if (code < 256)
        qWarning("Morvex::Settings: unknown quoted character '%c' (0x%x) in %s", int(code), code,
                 qUtf8Printable(m_fileName));
    else
        qWarning("Morvex::Settings: unknown quoted character with hex code 0x%x in %s", code,
                 qUtf8Printable(m_fileName));
}

UserSettings::UserSettings(UserSettingsType type)
    : Settings(userSettingsDir(), userFileName(type))
{
}

GlobalSettings::GlobalSettings(GlobalSettingsType type)
    : Settings(globalSettingsDir(), globalFileName(type))
{
}

} // namespace Morvex
