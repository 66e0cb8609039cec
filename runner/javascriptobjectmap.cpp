#include "runner/javascriptobjectmap.h"

#include "runner/javascriptcode.h"
#include "runner/messages.h"
#include "runner/resources.h"
#include "shared/files/regularfile.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace Morvex {
namespace {

using SymbolicName = ScriptedObjectMap::ScriptedSymbolicName;
using RealName = ScriptedObjectMap::ScriptedRealName;
using PropertyValue = ObjectName::PropertyValue;

const QLatin1String namesObject("names");

// A change within the tick of the file system's clock leaves the times as they were.
const qint64 nsPerClockTick = 20'000'000;
const qint64 nsPerSecond = 1'000'000'000;

qint64 nanoseconds(const timespec &time)
{
    return time.tv_sec * nsPerSecond + time.tv_nsec;
}

// What distinguishes one state of a file from another, without a look into it.
struct FileState
{
    ino_t inode = 0;
    off_t size = -1;
    qint64 changed = 0;

    static FileState of(const QString &path)
    {
        struct stat status;
        if (::stat(QFile::encodeName(path).constData(), &status) != 0)
            return {};
        return {status.st_ino, status.st_size, nanoseconds(status.st_ctim)};
    }

    // Whether a later change is sure to show.
    bool isSettled() const
    {
        timespec now;
        ::clock_gettime(CLOCK_REALTIME, &now);
        return nanoseconds(now) - changed > nsPerClockTick;
    }

    bool operator==(const FileState &other) const
    {
        return inode == other.inode && size == other.size && changed == other.changed;
    }
};

// A file that can't be read is not the same as one that is missing, nor as an empty one.
QByteArray contentOf(const QString &path, bool *isRead = nullptr)
{
    QFile file(path);
    const bool isOpen = openRegularFile(&file).isEmpty();
    if (isRead)
        *isRead = isOpen;
    return isOpen ? file.readAll() : QByteArray();
}

QString inOneLine(QString text)
{
    return text.replace(namesFileReference({}), QLatin1String(":"))
        .replace(QLatin1Char('\\'), QLatin1String("\\\\"))
        .replace(QLatin1Char('\t'), QLatin1String("\\t"))
        .replace(QLatin1Char('\n'), QLatin1String("\\n"));
}

// The name with ":" before names of the file as the reference that it is.
ObjectName withReferences(const ObjectName &name, const QSet<SymbolicName> &keys)
{
    if (!name.isMultiProperty())
        return name;
    auto properties = name.properties();
    for (PropertyValue &value : properties) {
        const QString key = value.text.mid(1);
        if (ObjectName::isSymbolicName(value.text) && keys.contains(SymbolicName(key)))
            value.text = namesFileReference(key);
        else if (value.kind == PropertyValue::REFERENCE)
            value.text = withReferences(ObjectName(value.text), keys).qualifiedName();
    }
    return ObjectName(properties);
}

} // namespace

// The names file in one state.
struct JavaScriptObjectMap::Contents
{
    FileState state;
    bool isSettled = false;
    bool isRead = false;
    bool exists = false;
    QByteArray bytes;
    NamesFileError error;
    std::vector<std::pair<QString, QString>> lines;
    QSet<SymbolicName> names;

    void load(const QString &path, std::chrono::milliseconds limit);

    // The text of a name in which each object that it refers to, by a name of the file or in words
    // of its own, is replaced by a number for that object.
    QString canonical(const ObjectName &name) const;
    QString firstNameOf(const ObjectName &name) const
    {
        return keysByCanonical.value(canonical(name));
    }

private:
    PropertyValue canonicalValue(const PropertyValue &value) const;
    void add(const QString &key, const QString &realName);

    int numberOf(const QString &canonicalName) const;

    QHash<QString, QString> keysByCanonical;
    QHash<QString, int> numbersByKey;
    // Of names of the file and of those that were asked for.
    mutable QHash<QString, int> numbers;
};

void JavaScriptObjectMap::Contents::load(const QString &path, std::chrono::milliseconds limit)
{
    ScriptEngine engine;
    const QJSValue functions = installNameFunctions(&engine);
    error = runNamesFile(&engine, functions, path, &lines, limit);
    for (const auto &line : lines)
        add(line.first, line.second);
}

void JavaScriptObjectMap::Contents::add(const QString &key, const QString &realName)
{
    names.insert(SymbolicName(key));
    const QString text = canonical(ObjectName(realName));
    if (!keysByCanonical.contains(text))
        keysByCanonical.insert(text, key);
    numbersByKey.insert(key, numberOf(text));
}

int JavaScriptObjectMap::Contents::numberOf(const QString &canonicalName) const
{
    const auto known = numbers.constFind(canonicalName);
    return known != numbers.constEnd() ? *known : *numbers.insert(canonicalName, numbers.size());
}

PropertyValue JavaScriptObjectMap::Contents::canonicalValue(const PropertyValue &value) const
{
    const auto byNumber = [](int number) {
        return PropertyValue{PropertyValue::EXACT, namesFileReference(QString::number(number))};
    };
    if (isNamesFileReference(value.text))
        return byNumber(numbersByKey.value(value.text.mid(1), -1));
    return value.kind == PropertyValue::REFERENCE
               ? byNumber(numberOf(canonical(ObjectName(value.text))))
               : value;
}

QString JavaScriptObjectMap::Contents::canonical(const ObjectName &name) const
{
    if (!name.isMultiProperty())
        return name.qualifiedName();
    QMap<QString, PropertyValue> properties = name.properties();
    for (PropertyValue &value : properties)
        value = canonicalValue(value);
    return ObjectName(properties).qualifiedName();
}

JavaScriptObjectMap::JavaScriptObjectMap(const QString &path, std::chrono::milliseconds limit)
    : ScriptedObjectMap(resourcePath(QStringLiteral("names.js")), path)
    , m_limit(limit)
{
}

JavaScriptObjectMap::~JavaScriptObjectMap() = default;

// One run of the engine for each state of the file: recording asks for names all the time.
const JavaScriptObjectMap::Contents &JavaScriptObjectMap::contents() const
{
    const FileState state = FileState::of(scriptPath());
    if (m_contents && m_contents->isSettled && m_contents->state == state)
        return *m_contents;
    bool isRead = false;
    const QByteArray bytes = contentOf(scriptPath(), &isRead);
    const bool exists = QFileInfo::exists(scriptPath());
    if (!m_contents || m_contents->bytes != bytes || m_contents->isRead != isRead ||
        m_contents->exists != exists) {
        m_contents = std::make_unique<Contents>();
        m_contents->bytes = bytes;
        m_contents->isRead = isRead;
        m_contents->exists = exists;
        m_contents->load(scriptPath(), m_limit);
    }
    m_contents->state = state;
    m_contents->isSettled = state.isSettled();
    return *m_contents;
}

NamesFileError JavaScriptObjectMap::error() const
{
    return contents().error;
}

QString JavaScriptObjectMap::saveOrKeep() const
{
    const NamesFileError unusable = checkNamesFileContent(scriptPath(), contentOf(scriptPath()));
    const bool isSaved = unusable.text.isEmpty() ? save() : refuseToSave(unusable.toString());
    if (isSaved || unsavedCode().isEmpty())
        return saveError();
    for (const QString &line : unsavedCode().split(QLatin1Char('\n')))
        printLine(line);
    return saveError() + QStringLiteral("; the names are printed above instead");
}

bool JavaScriptObjectMap::scriptedNamesDump(QString *dump) const
{
    for (const auto &line : contents().lines)
        *dump += QLatin1Char(':') + inOneLine(line.first) + QLatin1Char('\t') +
                 inOneLine(line.second) + QLatin1Char('\n');
    return contents().error.text.isEmpty();
}

// In the dump some characters of a name are escaped.
QStringList JavaScriptObjectMap::getScriptedSymbolicNames() const
{
    QStringList names;
    for (const auto &line : contents().lines)
        names += line.first;
    return names;
}

QString JavaScriptObjectMap::scriptExpression(const QString &name) const
{
    return name;
}

// The keys of the object "names" are what names are distinguished by.
SymbolicName JavaScriptObjectMap::qualifiedSymbolicName(const SymbolicName &name) const
{
    return name;
}

SymbolicName JavaScriptObjectMap::semiQualifiedSymbolicName(const SymbolicName &name) const
{
    return SymbolicName(javaScriptMember(namesObject, name.text()));
}

SymbolicName JavaScriptObjectMap::existingSymbolicName(const ObjectName &name) const
{
    return definedName(withReferences(name, contents().names));
}

SymbolicName JavaScriptObjectMap::definedName(const ObjectName &name) const
{
    return SymbolicName(contents().firstNameOf(name));
}

QSet<SymbolicName> JavaScriptObjectMap::existingSymbolicNames() const
{
    return contents().names;
}

bool JavaScriptObjectMap::hasSymbolicName(const SymbolicName &name) const
{
    return contents().names.contains(name);
}

QString JavaScriptObjectMap::definitionCode(const SymbolicName &name,
                                            const RealName &realName) const
{
    return QStringLiteral("%1 = %2;").arg(semiQualifiedSymbolicName(name).text(), realName.text());
}

QString JavaScriptObjectMap::commentLine(const QString &line) const
{
    return line.isEmpty() ? QStringLiteral("//") : QLatin1String("// ") + line;
}

QString JavaScriptObjectMap::literalSymbolicName(const QString &name) const
{
    return javaScriptString(name);
}

SymbolicName JavaScriptObjectMap::identifierFromName(const QString &name) const
{
    return SymbolicName(javaScriptIdentifier(name));
}

QString JavaScriptObjectMap::propertyValueCode(const PropertyValue &value) const
{
    const QString text = javaScriptString(value.text);
    switch (value.kind) {
    case PropertyValue::EXACT:
    case PropertyValue::REFERENCE:
        return text;
    case PropertyValue::WILDCARD:
        return QStringLiteral("wildcard(%1)").arg(text);
    case PropertyValue::REGEXP:
        return QStringLiteral("regexp(%1)").arg(text);
    }
    return text;
}

RealName
JavaScriptObjectMap::multiPropertyRealNameCode(const QMap<QString, QString> &properties) const
{
    return RealName(javaScriptObject(properties));
}

RealName JavaScriptObjectMap::plainRealNameCode(const QString &name) const
{
    return RealName(javaScriptString(name));
}

} // namespace Morvex
