#pragma once

#include "morvex_export.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace Morvex {

/// Reads a file of lines "KEY = value" into a map from key to words. A value may refer to a key
/// above it in the file, or to an environment variable, by $(NAME).
class MORVEX_EXPORT ConfParser
{
public:
    /// Parses @p fileName at once. Without @p splitValues each value is one word, blanks included.
    ConfParser(const QString &fileName, bool splitValues);

    const QMap<QString, QStringList> &entries() const { return m_entries; }

    /// The first error, which ended the parse; empty when there was none. The entries before
    /// the error are kept.
    const QString &error() const { return m_error; }

    /// Cuts @p text into arguments at blanks. Double quotes protect blanks and are dropped, and a
    /// backslash before a blank keeps it in the argument.
    static QStringList splitArgs(const QString &text);

private:
    struct Position;

    void parse(const QString &fileName);
    bool parseAssignment(const QString &fileName, Position &position);
    /// False for a value that is left as it is: its references add too many characters.
    bool evaluate(QString &value);
    QStringList split(const QString &value) const;

    QMap<QString, QStringList> m_entries;
    bool m_splitValues;
    QString m_error;
    // The characters that references may still add to the file's values.
    qint64 m_growthLeft;
};

/// The entries of a configuration file under an optional settings group, whose entries have keys
/// of the form "group/KEY". With a group active only the group's keys count; nothing falls back to
/// the plain ones. The "global" operations take keys as they are.
class MORVEX_EXPORT Config
{
public:
    Config() = default;
    explicit Config(const QMap<QString, QStringList> &entries);

    /// Empty when no group is active.
    QString settingsGroup() const { return m_settingsGroup; }

    /// "Default" stands for no group.
    void setSettingsGroup(const QString &group);

    QString localKey(const QString &key) const;

    /// The keys that belong to no group, sorted.
    QStringList globalEntries() const;

    bool hasGlobalEntry(const QString &key) const;
    /// The words joined by one blank; empty for a missing key.
    QString globalEntry(const QString &key) const;
    QStringList globalListEntry(const QString &key) const;

    bool hasEntry(const QString &key) const;
    QString entry(const QString &key) const;
    QStringList listEntry(const QString &key) const;
    /// True for "true", "on", "yes", a number other than 0, and a key without a value.
    bool boolEntry(const QString &key) const;

    void setGlobalEntry(const QString &key, const QStringList &value);
    void setEntry(const QString &key, const QStringList &value);
    void setBoolEntry(const QString &key, bool value);

private:
    QMap<QString, QStringList> m_entries;
    QString m_settingsGroup;
};

} // namespace Morvex
