#pragma once

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QVariant>

namespace Morvex {

/// The file that a recording is kept in until its test case is written, a line of JSON for each
/// action, so that neither the end of the application nor that of the recorder costs any. It is
/// beside the directory of the test case. One recorder has it at a time.
class RecordingJournal
{
public:
    /// Of a test case that need not exist. Opens nothing.
    explicit RecordingJournal(const QString &testCaseDirectory);

    QString path() const { return m_file.fileName(); }
    /// Whether a recording is being made, or was not finished.
    bool exists() const { return m_file.exists(); }

    // Each returns an error text, empty on success.

    /// Makes the file, which must not exist. @p start is what starts the application.
    [[nodiscard]] QString create(const QString &start);
    /// After an error nothing more is added.
    [[nodiscard]] QString add(const QVariantMap &action);
    /// Opens one that was not finished, and keeps it from others. What was cut by a crash is left
    /// out.
    [[nodiscard]] QString load();

    QString start() const { return m_start; }
    const QVariantList &actions() const { return m_actions; }
    /// Whether more than what was started comes of it.
    bool hasUserActions() const;

    void remove() { m_file.remove(); }
    void clear() { m_actions.clear(); }

private:
    [[nodiscard]] QString lock();
    [[nodiscard]] QString begin();
    [[nodiscard]] QString write(const QVariantMap &line);
    [[nodiscard]] QString readLines();

    QFile m_file;
    QString m_start;
    QString m_error;
    QVariantList m_actions;
};

} // namespace Morvex
