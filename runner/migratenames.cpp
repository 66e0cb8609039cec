#include "runner/migratenames.h"

#include "objectmodel/objectmap.h"
#include "runner/javascriptobjectmap.h"
#include "runner/messages.h"
#include "runner/namesfile.h"
#include "runner/runneroptions.h"
#include "test/testsuite.h"

#include <QDir>
#include <QFileInfo>

namespace Morvex {
namespace {

using SymbolicName = ScriptedObjectMap::ScriptedSymbolicName;

// The object with the names of the map that it refers to replaced by those of the names file.
ObjectName translated(const ObjectName &name, const QMap<QString, QString> &migrated)
{
    if (!name.isMultiProperty())
        return name;
    auto properties = name.properties();
    for (auto &value : properties) {
        if (migrated.contains(value.text))
            value.text = QLatin1Char(':') + migrated.value(value.text);
    }
    return ObjectName(properties);
}

class Migration
{
public:
    Migration(const ObjectMap &map, const QString &namesPath)
        : m_map(map)
        , m_namesPath(namesPath)
        , m_names(namesPath)
    {
    }

    int run();

private:
    void findKnownNames();
    bool findKnownName(const QString &name, const ObjectName &object);
    void reserveKeys();
    int save(int count);
    void report(int count) const;

    const ObjectMap &m_map;
    QString m_namesPath;
    JavaScriptObjectMap m_names;
    QMap<QString, QString> m_migrated;
};

int Migration::run()
{
    const NamesFileError error = m_names.error();
    if (!error.text.isEmpty()) {
        printMessage(error.toString());
        return ExitUnusable;
    }
    findKnownNames();
    reserveKeys();
    for (const QString &name : m_map.names().keys())
        m_names.migrateName(m_map, name, m_migrated);
    const int count = m_names.createdNames().size();
    if (count > 0)
        return save(count);
    printMessage(QStringLiteral("'%1' already has all names of the object map").arg(m_namesPath));
    return ExitPassed;
}

// Names that an earlier migration, or a recording, has brought into the file. One that refers to
// another is found after it.
void Migration::findKnownNames()
{
    const auto table = m_map.names();
    for (bool hasFound = true; hasFound;) {
        hasFound = false;
        for (auto entry = table.begin(); entry != table.end(); ++entry)
            hasFound = findKnownName(entry.key(), *entry) || hasFound;
    }
}

bool Migration::findKnownName(const QString &name, const ObjectName &object)
{
    if (m_migrated.contains(name))
        return false;
    const SymbolicName known = m_names.existingSymbolicName(translated(object, m_migrated));
    if (known.isEmpty())
        return false;
    m_migrated.insert(name, known.text());
    return true;
}

// A key of the file that stands for another object must not be taken. No name of a map is without
// its colon.
void Migration::reserveKeys()
{
    const QStringList used = m_migrated.values();
    for (const SymbolicName &key : m_names.existingSymbolicNames()) {
        if (!used.contains(key.text()))
            m_migrated.insert(key.text(), key.text());
    }
}

int Migration::save(int count)
{
    const auto created = m_names.createdNames();
    const QString error = m_names.saveOrKeep();
    if (!error.isEmpty()) {
        printMessage(error);
        return ExitUnusable;
    }
    if (!m_names.hasSymbolicName(created.last().first)) {
        printMessage(
            QStringLiteral("'%1' has no line that ends in MORVEX_INSERT_OBJECT_NAMES_HERE: "
                           "the names are at its end, as comments")
                .arg(m_namesPath));
        return ExitFailed;
    }
    report(count);
    return ExitPassed;
}

void Migration::report(int count) const
{
    for (const QString &reference : m_names.danglingReferences())
        printMessage(
            QStringLiteral("'%1' is not in the object map; names that refer to it keep it as "
                           "a text")
                .arg(reference));
    printMessage((count == 1 ? QStringLiteral("1 name was added to '%2'")
                             : QStringLiteral("%1 names were added to '%2'").arg(count))
                     .arg(m_namesPath));
}

} // namespace

int migrateNames(const RunnerOptions &options)
{
    const QDir dir(QFileInfo(options.suiteDirectory).absoluteFilePath());
    if (options.suiteDirectory.isEmpty() || !dir.exists()) {
        printMessage(QStringLiteral("--migrate-names: there is no suite directory '%1'")
                         .arg(options.suiteDirectory));
        return ExitUnusable;
    }
    const TestSuite suite(dir, options.settingsGroup);
    if (suite.hasConfigLoadError()) {
        printMessage(QStringLiteral("cannot load the suite '%1': %2")
                         .arg(options.suiteDirectory, suite.configLoadErrorMsg().trimmed()));
        return ExitUnusable;
    }
    ObjectMap map;
    const QString error = map.load(suite.objectMap());
    if (!error.isEmpty()) {
        printMessage(QStringLiteral("cannot read the object map: ") + error);
        return ExitUnusable;
    }
    return Migration(map, dir.filePath(namesFileName())).run();
}

} // namespace Morvex
