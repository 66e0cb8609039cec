#include "runner/migratenames.h"

#include "objectmodel/objectmap.h"
#include "runner/javascriptobjectmap.h"
#include "runner/messages.h"
#include "runner/namesfile.h"
#include "runner/runneroptions.h"
#include "shared/realpath.h"
#include "test/names/namesfile.h"
#include "test/testsuite.h"

#include <QDir>

namespace Morvex {
namespace {

using SymbolicName = ScriptedObjectMap::ScriptedSymbolicName;

using PropertyValue = ObjectName::PropertyValue;
using Names = QMap<QString, ObjectName>;

// The object with the names of the map that it refers to replaced by those of the names file. False
// while one of them is not known to be there: its text may be that of another one in the file.
bool translate(ObjectName *name, const Names &table, const QMap<QString, QString> &migrated)
{
    auto properties = name->properties();
    for (PropertyValue &value : properties) {
        if (value.kind == PropertyValue::REFERENCE && !ObjectName::isSymbolicName(value.text)) {
            ObjectName inner(value.text);
            if (!translate(&inner, table, migrated))
                return false;
            value.text = inner.qualifiedName();
        } else if (migrated.contains(value.text)) {
            value.text = namesFileReference(migrated.value(value.text));
        } else if (table.contains(value.text)) {
            return false;
        }
    }
    if (name->isMultiProperty())
        *name = ObjectName(properties);
    return true;
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
    bool findKnownName(const QString &name, ObjectName object);
    void reserveKeys();
    int save(int count);
    void reportDanglingReferences() const;
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
// another is found after it, so what is left is looked at again as long as some are found.
void Migration::findKnownNames()
{
    if (m_names.existingSymbolicNames().isEmpty())
        return;
    const Names table = m_map.names();
    QStringList left = table.keys();
    for (int before = -1; before != left.size();) {
        before = left.size();
        QStringList unknown;
        for (const QString &name : left) {
            if (!findKnownName(name, table.value(name)))
                unknown += name;
        }
        // Chains of references are found from their ends, in whichever order they are named.
        left = QStringList(unknown.rbegin(), unknown.rend());
    }
}

bool Migration::findKnownName(const QString &name, ObjectName object)
{
    if (m_migrated.contains(name) || !translate(&object, m_map.names(), m_migrated))
        return false;
    const SymbolicName known = m_names.definedName(object);
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
            m_migrated.insert(QLatin1String("reserved ") + key.text(), key.text());
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
    const NamesFileError broken = m_names.error();
    if (!broken.text.isEmpty()) {
        printMessage(broken.toString());
        return ExitUnusable;
    }
    reportDanglingReferences();
    if (!m_names.hasSymbolicName(created.last().first)) {
        printMessage(QStringLiteral(
                         "'%1' has no line that ends in %2: the names are at its end, as comments")
                         .arg(m_namesPath, insertionMarker));
        return ExitFailed;
    }
    report(count);
    return ExitPassed;
}

void Migration::reportDanglingReferences() const
{
    for (const QString &reference : m_names.danglingReferences())
        printMessage(
            QStringLiteral("'%1' is not in the object map; names that refer to it keep it as "
                           "a text")
                .arg(reference));
}

void Migration::report(int count) const
{
    printMessage((count == 1 ? QStringLiteral("1 name was added to '%2'")
                             : QStringLiteral("%1 names were added to '%2'").arg(count))
                     .arg(m_namesPath));
}

} // namespace

int migrateNames(const RunnerOptions &options)
{
    const QDir dir(cleanedPath(options.suiteDirectory));
    if (options.suiteDirectory.isEmpty() || !dir.exists()) {
        printMessage(QStringLiteral("--migrate-names: there is no suite directory '%1'")
                         .arg(options.suiteDirectory) +
                     suiteDirectoryHint(options));
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
