#pragma once

#include "morvex_export.h"
#include "objectmodel/objectmap.h"
#include "objectmodel/objectname.h"

#include <QByteArray>
#include <QDateTime>
#include <QHash>
#include <QList>
#include <QMap>
#include <QPair>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <memory>

namespace Morvex {

class RunnerInterface;

/// Symbolic object names that are kept as script code in a file of the suite. This class decides
/// when a name is created, how it is made unique and where its definition goes; a subclass knows
/// one script language.
///
/// The operations of subclasses may be called at any time between construction and destruction,
/// also from const operations, and have to describe the names file as it is at that moment. Use an
/// object from one thread.
class MORVEX_EXPORT ScriptedObjectMap
{
public:
    /// A name as the language writes it. Subclasses choose the form, as long as the same name
    /// always has the same text.
    class ScriptedSymbolicName
    {
    public:
        ScriptedSymbolicName() = default;
        explicit ScriptedSymbolicName(const QString &text)
            : m_text(text)
        {
        }

        QString text() const { return m_text; }
        bool isEmpty() const { return m_text.isEmpty(); }

        friend bool operator==(const ScriptedSymbolicName &a, const ScriptedSymbolicName &b)
        {
            return a.m_text == b.m_text;
        }
        friend bool operator!=(const ScriptedSymbolicName &a, const ScriptedSymbolicName &b)
        {
            return !(a == b);
        }
        friend bool operator<(const ScriptedSymbolicName &a, const ScriptedSymbolicName &b)
        {
            return a.m_text < b.m_text;
        }
        friend uint qHash(const ScriptedSymbolicName &name, uint seed = 0)
        {
            return ::qHash(name.m_text, seed);
        }

    private:
        QString m_text;
    };

    /// The script expression for the real name of an object.
    class ScriptedRealName
    {
    public:
        ScriptedRealName() = default;
        explicit ScriptedRealName(const QString &text)
            : m_text(text)
        {
        }

        QString text() const { return m_text; }

        friend bool operator==(const ScriptedRealName &a, const ScriptedRealName &b)
        {
            return a.m_text == b.m_text;
        }
        friend bool operator!=(const ScriptedRealName &a, const ScriptedRealName &b)
        {
            return !(a == b);
        }
        friend bool operator<(const ScriptedRealName &a, const ScriptedRealName &b)
        {
            return a.m_text < b.m_text;
        }
        friend uint qHash(const ScriptedRealName &name, uint seed = 0)
        {
            return ::qHash(name.m_text, seed);
        }

    private:
        QString m_text;
    };

    using CreatedNames = QVector<QPair<ScriptedSymbolicName, ScriptedRealName>>;

    /// A new names file starts with the content of @p templatePath; @p scriptPath is the names
    /// file. Neither has to exist.
    ScriptedObjectMap(const QString &templatePath, const QString &scriptPath);
    virtual ~ScriptedObjectMap();

    ScriptedObjectMap(const ScriptedObjectMap &) = delete;
    ScriptedObjectMap &operator=(const ScriptedObjectMap &) = delete;

    /// Runs the names file. @p dump gets a line for each name: ":", the name, a tab, its real name.
    /// False when the file can't be run.
    virtual bool scriptedNamesDump(QString *dump) const = 0;
    /// What to paste into recorded code for a text that getSymbolicName gave.
    virtual QString scriptExpression(const QString &name) const = 0;
    /// The name as code outside of the names file writes it.
    virtual ScriptedSymbolicName qualifiedSymbolicName(const ScriptedSymbolicName &name) const = 0;
    /// The name as code in the names file writes it.
    virtual ScriptedSymbolicName semiQualifiedSymbolicName(const ScriptedSymbolicName &name) const;
    /// Where new definitions go. False, with @p position at @p end, when the lines don't say.
    virtual bool findCodeInsertionPos(QList<QString>::iterator begin, QList<QString>::iterator end,
                                      QList<QString>::iterator *position) const;
    /// The name under which the file defines this object; empty when it doesn't.
    virtual ScriptedSymbolicName existingSymbolicName(const ObjectName &name) const = 0;
    virtual QSet<ScriptedSymbolicName> existingSymbolicNames() const = 0;
    virtual bool hasSymbolicName(const ScriptedSymbolicName &name) const = 0;
    /// One definition, which may have several lines. Without a line feed at its end.
    virtual QString definitionCode(const ScriptedSymbolicName &name,
                                   const ScriptedRealName &realName) const = 0;
    virtual QString commentLine(const QString &line) const = 0;
    /// The text of a name as a value of the language.
    virtual QString literalSymbolicName(const QString &name) const = 0;
    virtual ScriptedSymbolicName identifierFromName(const QString &name) const = 0;
    virtual QString propertyValueCode(const ObjectName::PropertyValue &value) const = 0;
    /// Of property names to the code of their values.
    virtual ScriptedRealName
    multiPropertyRealNameCode(const QMap<QString, QString> &properties) const = 0;
    virtual ScriptedRealName plainRealNameCode(const QString &name) const = 0;

    /// The code that stands for the object of @p name, a symbolic or a real name. A real name that
    /// nothing defines yet gets a definition, and with @p recursive false so does a symbolic name
    /// of the object map. What can't be resolved comes back as a literal.
    QString getSymbolicName(const QString &name, bool recursive);
    QString createSymbolicName(const ObjectName &name, bool symbolicRefs);
    ScriptedRealName getScriptedRealName(const ObjectName &name);
    /// With @p inlineRefs an object that the name refers to is written within the expression, else
    /// as a name of its own, for which @p symbolicRefs is the recursive of getSymbolicName.
    ScriptedRealName createScriptedRealName(const ObjectName &name, bool symbolicRefs,
                                            bool inlineRefs);

    /// All names of the file; empty when it can't be run.
    virtual QStringList getScriptedSymbolicNames() const;

    /// Replaces the created names by those of a serialized object map.
    void fromLegacyRepresentation(const QString &serializedMap);
    /// Creates the name @p name of @p map and, first, those that it refers to. @p migrated maps the
    /// names of the map to identifiers; what it has already is left alone.
    void migrateName(const ObjectMap &map, const QString &name, QMap<QString, QString> &migrated);
    /// Names that migrated names refer to, but the map doesn't have. They are written as literals.
    QStringList danglingReferences() const;

    /// The bytes of the names file, or those of the template when it is missing or blank.
    QByteArray currentScriptCode() const;
    /// Whether definitions that are added to that code have a place in it.
    bool hasCodeInsertionPos() const;
    /// The names file with the created names in it.
    QString getScriptCode() const;
    /// Writes the names file and forgets the created names, also when that fails. The code is first
    /// written into a file beside it, which is left when the names file can't be written: False,
    /// and the names file is as it was.
    bool save() const;
    /// What went wrong in the last save, with the names file and the one beside it; empty after a
    /// success.
    QString saveError() const;
    /// The whole names file, when the last save could write it nowhere; else null.
    QString unsavedCode() const;

    /// Made since the last save, in the order of creation.
    CreatedNames createdNames() const;

    /// The files beside the names file, then those of the user's directories of shared scripts,
    /// that fit one of the wildcard @p patterns.
    QStringList scriptFiles(const QStringList &patterns) const;
    /// The latest time of the names file and of all scriptFiles. Invalid when there is none.
    QDateTime lastScriptModification(const QStringList &patterns) const;
    QStringList warningTextScriptCode() const;

    /// Whether @p name begins with ":".
    static bool isSymbolicName(const QString &name);

protected:
    QString templatePath() const;
    QString scriptPath() const;
    /// A runner without an application, for code of the names file that asks for one.
    RunnerInterface *runner() const;
    /// Fails as save does, for @p reason, and leaves the names file alone.
    bool refuseToSave(const QString &reason) const;

private:
    QString referenceCode(const ObjectName::PropertyValue &value, bool symbolicRefs,
                          bool inlineRefs);
    void createFromObjectMap(const ObjectMap &map, const QString &name);
    ScriptedSymbolicName symbolOf(const QString &name) const;
    bool isDefined(const ScriptedSymbolicName &name) const;
    ScriptedSymbolicName newSymbolicName(const ObjectName &name) const;
    void addCreatedName(const ScriptedSymbolicName &name, const ScriptedRealName &realName);
    void clearCreatedNames() const;
    void migrateOne(const QString &name, const ObjectName &object,
                    QMap<QString, QString> &migrated);
    QStringList newDefinitions() const;
    bool saveUnless(const QString &reason) const;

    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Morvex
