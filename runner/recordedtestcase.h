#pragma once

#include "test/eventrecorder.h"

#include <QDir>
#include <QString>

namespace Morvex {

class RecordingJournal;

/// A test case that is made of a recording.
class RecordedTestCase
{
public:
    RecordedTestCase(const QDir &suite, const QString &name,
                     EventRecorder::Synchronization synchronization);

    QString directory() const { return m_suite.filePath(m_name); }
    QString scriptPath() const { return directory() + QLatin1String("/script.js"); }

    /// Why it can't be recorded; empty when it can. An existing test case is never replaced.
    QString whyNot() const;

    /// Writes the script, and the names that are not yet in the names file of the suite. Returns
    /// an error text, empty on success.
    [[nodiscard]] QString write(const RecordingJournal &journal) const;

private:
    QDir m_suite;
    QString m_name;
    EventRecorder::Synchronization m_synchronization;
};

} // namespace Morvex
