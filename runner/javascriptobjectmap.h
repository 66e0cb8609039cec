#pragma once

#include "runner/namesfile.h"
#include "test/scriptedobjectmap.h"

#include <memory>

namespace Morvex {

/// The names of a suite in its names.js, as "names.saveButton = {type: "QPushButton"};".
class JavaScriptObjectMap : public ScriptedObjectMap
{
public:
    /// @p path is that of the names file, which is interrupted after @p limit.
    explicit JavaScriptObjectMap(const QString &path,
                                 std::chrono::milliseconds limit = longestNamesFileRun);
    ~JavaScriptObjectMap() override;

    /// Why the names file can't be used at this moment; without a text when it can. While there is
    /// an error the file has no names, and saving would add definitions that nothing reads.
    NamesFileError error() const;

    /// The name under which the file defines an object that refers to others by namesFileReference
    /// alone; empty when it doesn't.
    ScriptedSymbolicName definedName(const ObjectName &name) const;

    /// Saves, unless the names file holds what would be lost. When it could be written nowhere, the
    /// code is printed. The error text says where it is; empty on success.
    [[nodiscard]] QString saveOrKeep() const;

    bool scriptedNamesDump(QString *dump) const override;
    QStringList getScriptedSymbolicNames() const override;
    QString scriptExpression(const QString &name) const override;
    ScriptedSymbolicName qualifiedSymbolicName(const ScriptedSymbolicName &name) const override;
    ScriptedSymbolicName semiQualifiedSymbolicName(const ScriptedSymbolicName &name) const override;
    ScriptedSymbolicName existingSymbolicName(const ObjectName &name) const override;
    QSet<ScriptedSymbolicName> existingSymbolicNames() const override;
    bool hasSymbolicName(const ScriptedSymbolicName &name) const override;
    QString definitionCode(const ScriptedSymbolicName &name,
                           const ScriptedRealName &realName) const override;
    QString commentLine(const QString &line) const override;
    QString literalSymbolicName(const QString &name) const override;
    ScriptedSymbolicName identifierFromName(const QString &name) const override;
    QString propertyValueCode(const ObjectName::PropertyValue &value) const override;
    ScriptedRealName
    multiPropertyRealNameCode(const QMap<QString, QString> &properties) const override;
    ScriptedRealName plainRealNameCode(const QString &name) const override;

private:
    struct Contents;

    const Contents &contents() const;

    const std::chrono::milliseconds m_limit;
    mutable std::unique_ptr<Contents> m_contents;
};

} // namespace Morvex
