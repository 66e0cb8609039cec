#include "test/scriptedobjectmap.h"

#include "test/dummyrunnerinterface.h"
#include "test/names/freename.h"
#include "test/names/nameresolution.h"
#include "test/names/namesfile.h"
#include "test/names/referenceorder.h"
#include "test/nullreportgenerator.h"
#include "test/output/unsavedcopy.h"
#include "test/testresult.h"

#include <algorithm>

namespace Morvex {

struct ScriptedObjectMap::Private
{
    Private(const QString &templateFile, const QString &scriptFile)
        : result(NullReportGenerator::create().generator)
        , runner(&result)
        , templatePath(templateFile)
        , scriptPath(scriptFile)
    {
    }

    TestResult result;
    DummyRunnerInterface runner;
    QString templatePath;
    QString scriptPath;
    CreatedNames createdNames;
    // Indexes of createdNames. Of several pairs with one real name the last.
    QSet<ScriptedSymbolicName> createdSymbols;
    QHash<ScriptedRealName, ScriptedSymbolicName> symbolsByRealName;

    NameResolution resolution;

    // While names are migrated; null otherwise.
    const QMap<QString, QString> *migrated = nullptr;
    // Of the map that migratedBefore names when it had migratedCount names.
    QSet<QString> migratedIdentifiers;
    const void *migratedBefore = nullptr;
    int migratedCount = 0;
    QStringList danglingReferences;

    QString saveError;
    QString unsavedCode;
};

ScriptedObjectMap::ScriptedObjectMap(const QString &templatePath, const QString &scriptPath)
    : d(std::make_unique<Private>(templatePath, scriptPath))
{
}

ScriptedObjectMap::~ScriptedObjectMap() = default;

ScriptedObjectMap::ScriptedSymbolicName
ScriptedObjectMap::semiQualifiedSymbolicName(const ScriptedSymbolicName &name) const
{
    return qualifiedSymbolicName(name);
}

bool ScriptedObjectMap::findCodeInsertionPos(QList<QString>::iterator begin,
                                             QList<QString>::iterator end,
                                             QList<QString>::iterator *position) const
{
    *position = std::find_if(begin, end,
                             [](const QString &line) { return line.endsWith(insertionMarker); });
    return *position != end;
}

QString ScriptedObjectMap::getSymbolicName(const QString &name, bool recursive)
{
    const NameResolution::Scope scope(&d->resolution);
    if (!isSymbolicName(name))
        return createSymbolicName(ObjectName(name), recursive);
    const ScriptedSymbolicName symbol = symbolOf(name);
    if (isDefined(symbol))
        return semiQualifiedSymbolicName(symbol).text();
    if (recursive)
        return literalSymbolicName(name);
    const ObjectMap *map = ObjectMap::self();
    if (!map)
        return createSymbolicName(ObjectName(name), recursive);
    if (!d->resolution.resolved.contains(name) && !d->resolution.underWay.contains(name) &&
        map->names().contains(name))
        createFromObjectMap(*map, name);
    return d->resolution.resolved.contains(name) ? d->resolution.resolved.value(name)
                                                 : literalSymbolicName(name);
}

void ScriptedObjectMap::createFromObjectMap(const ObjectMap &map, const QString &name)
{
    const QMap<QString, ObjectName> table = map.names();
    visitInOrderOfReference(
        name, &d->resolution.underWay,
        [&](const QString &each) { return symbolicReferences(table.value(each)); },
        [&](const QString &reference) {
            return table.contains(reference) && !d->resolution.resolved.contains(reference) &&
                   !isDefined(symbolOf(reference));
        },
        [&](const QString &each) {
            const QString code = createSymbolicName(table.value(each), false);
            d->resolution.resolved.insert(each, code);
        });
}

ScriptedObjectMap::ScriptedSymbolicName ScriptedObjectMap::symbolOf(const QString &name) const
{
    return qualifiedSymbolicName(ScriptedSymbolicName(name.mid(1)));
}

bool ScriptedObjectMap::isDefined(const ScriptedSymbolicName &name) const
{
    return d->createdSymbols.contains(name) || hasSymbolicName(name);
}

QString ScriptedObjectMap::createSymbolicName(const ObjectName &name, bool symbolicRefs)
{
    const NameResolution::Scope scope(&d->resolution);
    const ScriptedRealName realName = createScriptedRealName(name, symbolicRefs, false);
    // While names are migrated, ":" begins names of the map, which the file may have for other
    // objects.
    const bool isOfMap = d->migrated && !symbolicReferences(name).isEmpty();
    ScriptedSymbolicName symbol = isOfMap ? ScriptedSymbolicName() : existingSymbolicName(name);
    if (symbol.isEmpty())
        symbol = d->symbolsByRealName.value(realName);
    if (symbol.isEmpty()) {
        symbol = newSymbolicName(name);
        addCreatedName(symbol, realName);
    }
    return semiQualifiedSymbolicName(symbol).text();
}

ScriptedObjectMap::ScriptedSymbolicName
ScriptedObjectMap::newSymbolicName(const ObjectName &name) const
{
    const QString base =
        name.isMultiProperty() ? ObjectMap::symbolFromMultiPropName(name) : name.qualifiedName();
    // The name of a toolkit, which scripts know as it is.
    const QString wanted = base == QLatin1String("SWT") ? base : identifierFromName(base).text();
    const QSet<ScriptedSymbolicName> existing = existingSymbolicNames();
    return ScriptedSymbolicName(firstFreeName(wanted, [&](const QString &candidate) {
        const ScriptedSymbolicName symbol(candidate);
        return existing.contains(symbol) || d->createdSymbols.contains(symbol);
    }));
}

void ScriptedObjectMap::addCreatedName(const ScriptedSymbolicName &name,
                                       const ScriptedRealName &realName)
{
    d->createdNames.append({name, realName});
    d->createdSymbols.insert(name);
    d->symbolsByRealName.insert(realName, name);
}

void ScriptedObjectMap::clearCreatedNames() const
{
    d->createdNames.clear();
    d->createdSymbols.clear();
    d->symbolsByRealName.clear();
}

ScriptedObjectMap::ScriptedRealName ScriptedObjectMap::getScriptedRealName(const ObjectName &name)
{
    return createScriptedRealName(name, true, false);
}

ScriptedObjectMap::ScriptedRealName
ScriptedObjectMap::createScriptedRealName(const ObjectName &name, bool symbolicRefs,
                                          bool inlineRefs)
{
    const NameResolution::Scope scope(&d->resolution);
    if (!name.isMultiProperty())
        return plainRealNameCode(name.qualifiedName());
    const auto properties = name.properties();
    QMap<QString, QString> code;
    for (auto property = properties.begin(); property != properties.end(); ++property)
        code.insert(property.key(), isReference(*property)
                                        ? referenceCode(*property, symbolicRefs, inlineRefs)
                                        : propertyValueCode(*property));
    return multiPropertyRealNameCode(code);
}

QString ScriptedObjectMap::referenceCode(const ObjectName::PropertyValue &value, bool symbolicRefs,
                                         bool inlineRefs)
{
    // A migrated name may have had to give way to another one of its text.
    if (d->migrated && d->migrated->contains(value.text))
        return semiQualifiedSymbolicName(ScriptedSymbolicName(d->migrated->value(value.text)))
            .text();
    // A name that can't be migrated, or is being migrated, must not become another one that happens
    // to have got its text.
    if (d->migrated && isSymbolicName(value.text))
        return literalSymbolicName(value.text);
    if (inlineRefs)
        return createScriptedRealName(ObjectName(value.text), symbolicRefs, true).text();
    return getSymbolicName(value.text, symbolicRefs);
}

QStringList ScriptedObjectMap::getScriptedSymbolicNames() const
{
    QString dump;
    return scriptedNamesDump(&dump) ? namesOfDump(dump) : QStringList();
}

void ScriptedObjectMap::fromLegacyRepresentation(const QString &serializedMap)
{
    clearCreatedNames();
    const NameResolution::Scope scope(&d->resolution);
    for (const auto &entry : ObjectMap::parseSerializedMap(serializedMap)) {
        const ScriptedRealName realName = createScriptedRealName(entry.second, false, false);
        addCreatedName(symbolOf(entry.first), realName);
    }
}

void ScriptedObjectMap::migrateName(const ObjectMap &map, const QString &name,
                                    QMap<QString, QString> &migrated)
{
    const QMap<QString, ObjectName> table = map.names();
    if (migrated.contains(name) || !table.contains(name))
        return;
    const NameResolution::Scope scope(&d->resolution);
    if (d->migratedCount != migrated.size() || d->migratedBefore != &migrated)
        d->migratedIdentifiers = QSet<QString>(migrated.cbegin(), migrated.cend());
    d->migrated = &migrated;
    visitInOrderOfReference(
        name, &d->resolution.underWay,
        [&](const QString &each) { return symbolicReferences(table.value(each)); },
        [&](const QString &reference) {
            if (!table.contains(reference) && !migrated.contains(reference) &&
                !d->danglingReferences.contains(reference))
                d->danglingReferences += reference;
            return table.contains(reference) && !migrated.contains(reference);
        },
        [&](const QString &each) { migrateOne(each, table.value(each), migrated); });
    d->migrated = nullptr;
    d->migratedBefore = &migrated;
    d->migratedCount = migrated.size();
}

// What the name refers to has been migrated, but for names that refer back to it.
void ScriptedObjectMap::migrateOne(const QString &name, const ObjectName &object,
                                   QMap<QString, QString> &migrated)
{
    // Names within names have been created on the way.
    const QString candidate =
        firstFreeName(identifierFromName(name.mid(1)).text(), [this](const QString &text) {
            return d->migratedIdentifiers.contains(text) ||
                   d->createdSymbols.contains(ScriptedSymbolicName(text));
        });
    addCreatedName(ScriptedSymbolicName(candidate), createScriptedRealName(object, true, false));
    migrated.insert(name, candidate);
    d->migratedIdentifiers.insert(candidate);
}

QStringList ScriptedObjectMap::danglingReferences() const
{
    return d->danglingReferences;
}

QByteArray ScriptedObjectMap::currentScriptCode() const
{
    return namesFileContent(d->scriptPath, d->templatePath);
}

bool ScriptedObjectMap::hasCodeInsertionPos() const
{
    QList<QString> lines = linesOf(currentScriptCode());
    QList<QString>::iterator position;
    return findCodeInsertionPos(lines.begin(), lines.end(), &position);
}

QString ScriptedObjectMap::getScriptCode() const
{
    QList<QString> lines = linesOf(currentScriptCode());
    const QStringList definitions = newDefinitions();
    QList<QString>::iterator position;
    if (findCodeInsertionPos(lines.begin(), lines.end(), &position)) {
        const int index = static_cast<int>(position - lines.begin());
        lines = lines.mid(0, index) + definitions + lines.mid(index);
    } else {
        lines += warningTextScriptCode();
        // Each line of a definition: one that isn't a comment would be run.
        for (const QString &definition : definitions)
            for (const QString &line : definition.split(QLatin1Char('\n')))
                lines += commentLine(line);
    }
    return QStringList(lines).join(QLatin1Char('\n')) + QLatin1Char('\n');
}

QStringList ScriptedObjectMap::newDefinitions() const
{
    const QSet<ScriptedSymbolicName> existing = existingSymbolicNames();
    QStringList definitions;
    for (const auto &created : d->createdNames) {
        if (!existing.contains(created.first))
            definitions += definitionCode(created.first, created.second);
    }
    return definitions;
}

bool ScriptedObjectMap::save() const
{
    return saveUnless(QString());
}

bool ScriptedObjectMap::refuseToSave(const QString &reason) const
{
    return saveUnless(reason);
}

// With a reason not to, only beside the names file.
bool ScriptedObjectMap::saveUnless(const QString &reason) const
{
    const QString code = getScriptCode();
    clearCreatedNames();
    const QByteArray bytes = code.toUtf8();
    const QString dirError = makeDirectoryOf(d->scriptPath);
    UnsavedCopy copy(d->scriptPath, bytes);
    d->saveError = !reason.isEmpty()     ? reason
                   : !dirError.isEmpty() ? dirError
                                         : writeNamesFile(d->scriptPath, bytes);
    if (d->saveError.isEmpty())
        copy.remove();
    else if (!copy.path().isEmpty())
        d->saveError += QStringLiteral("; the names are in '%1' instead").arg(copy.path());
    d->unsavedCode = d->saveError.isEmpty() || !copy.path().isEmpty() ? QString() : code;
    return d->saveError.isEmpty();
}

QString ScriptedObjectMap::saveError() const
{
    return d->saveError;
}

QString ScriptedObjectMap::unsavedCode() const
{
    return d->unsavedCode;
}

ScriptedObjectMap::CreatedNames ScriptedObjectMap::createdNames() const
{
    return d->createdNames;
}

QStringList ScriptedObjectMap::scriptFiles(const QStringList &patterns) const
{
    return scriptFilesBeside(d->scriptPath, patterns);
}

QDateTime ScriptedObjectMap::lastScriptModification(const QStringList &patterns) const
{
    return latestModificationOf(QStringList(d->scriptPath) + scriptFiles(patterns));
}

QStringList ScriptedObjectMap::warningTextScriptCode() const
{
    QStringList lines;
    for (const QString &line : noteOfMissingMarker().split(QLatin1Char('\n')))
        lines += commentLine(line);
    return lines;
}

bool ScriptedObjectMap::isSymbolicName(const QString &name)
{
    return name.startsWith(QLatin1Char(':'));
}

QString ScriptedObjectMap::templatePath() const
{
    return d->templatePath;
}

QString ScriptedObjectMap::scriptPath() const
{
    return d->scriptPath;
}

RunnerInterface *ScriptedObjectMap::runner() const
{
    return &d->runner;
}

} // namespace Morvex
