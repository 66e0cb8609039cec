#pragma once

#include "morvex_export.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace Morvex {

/// The entries of one ini file: groups of keys, whose values are texts, lists, numbers or
/// booleans. The file is read at construction, all reads and writes then happen in memory, and
/// flush or the destructor writes the whole file, without its comments. Two objects on one file do
/// not see each other; the later flush wins.
///
/// A key may be a path with "/" between its parts. Groups and keys are in the file as they are: a
/// line break in one makes two lines of it, and a key that begins with "#" or "[" or with a blank,
/// or ends in one, is not the same when the file is read again.
///
/// Failures are warnings in the message log, and a read that fails gives its default. Use an object
/// from one thread.
class MORVEX_EXPORT Settings
{
public:
    /// A file that does not exist makes an empty store.
    explicit Settings(const QString &fileName);
    Settings(const QString &dir, const QString &name);
    /// Writes the file when an entry was written, whether or not it was flushed since. Removed
    /// entries alone do not count.
    virtual ~Settings();

    Settings(const Settings &) = delete;
    Settings &operator=(const Settings &) = delete;

    /// The directory named by MORVEX_USER_SETTINGS_DIR, or ".morvex" in the home directory. It is
    /// created when it does not exist; whether that worked shows when a file is written there.
    static QString morvexSettingsDir();
    /// The same.
    static QString settingsDir();
    /// Where the files of UserSettings are. Not created.
    static QString userSettingsDir();
    static QString defaultGroup();

    bool hasGroup(const QString &group) const;
    /// Sorted.
    QStringList groupList() const;

    /// False, with @p value left alone, when there is no such entry.
    bool readRawEntry(const QString &group, const QString &key, QString *value) const;
    QString readEntry(const QString &group, const QString &key, const QString &defaultValue) const;
    QStringList readListEntry(const QString &group, const QString &key,
                              const QStringList &defaultValue) const;
    int readNumEntry(const QString &group, const QString &key, int defaultValue) const;
    double readDoubleEntry(const QString &group, const QString &key, double defaultValue) const;
    /// A number, which is true when it is not 0, or "true" or "false" in any case.
    bool readBoolEntry(const QString &group, const QString &key, bool defaultValue) const;

    /// What is directly below the path @p key: the names that lead on, each once, or the names
    /// of entries. Below an empty key is the whole group.
    QStringList subkeyList(const QString &group, const QString &key) const;
    QStringList entryList(const QString &group, const QString &key) const;

    /// Stores @p value, which must not hold a line break, as it is to appear in the file.
    void writeRawEntry(const QString &group, const QString &key, const QString &value);
    void writeEntry(const QString &group, const QString &key, const QString &value);
    void writeEntry(const QString &group, const QString &key, const QStringList &value);
    void writeEntry(const QString &group, const QString &key, int value);
    /// Keeps six digits.
    void writeEntry(const QString &group, const QString &key, double value);
    void writeEntry(const QString &group, const QString &key, bool value);
    /// A literal would become a bool.
    void writeEntry(const QString &group, const QString &key, const char *value) = delete;

    /// The group stays, also when this was its last entry.
    void removeEntry(const QString &group, const QString &key);

    /// Writes the file in any case, and creates its directory. False when that fails; the file
    /// then is as it was.
    bool flush();

protected:
    /// Whether texts and lists are read with references to the environment, as in $(NAME),
    /// replaced; "$$" stands for one "$". Off by default.
    void setExpandsEnvironmentVariables(bool expands) { m_expands = expands; }

private:
    using Group = QMap<QString, QString>;

    void parse();
    void parseLine(const QString &line, Group **group, QString *groupName);
    QString toText() const;
    QStringList subkeyOrEntryList(const QString &group, const QString &key, bool subkeys) const;
    bool unquoteString(QString &text) const;
    bool unquoteStringList(const QString &text, QStringList &out) const;
    void warnOfEscape(QChar character) const;

    QMap<QString, Group> m_groups;
    QString m_fileName;
    bool m_dirty = false;
    bool m_expands = false;
};

/// A file of the user.
class MORVEX_EXPORT UserSettings : public Settings
{
public:
    enum UserSettingsType { Server, WebWrapper, TkWrapper, Paths, Ocr, QuillbaseCmd };

    explicit UserSettings(UserSettingsType type);
};

/// A file of the installation, below MORVEX_PREFIX.
class MORVEX_EXPORT GlobalSettings : public Settings
{
public:
    enum GlobalSettingsType { Morvex, Paths };

    explicit GlobalSettings(GlobalSettingsType type);
};

} // namespace Morvex
