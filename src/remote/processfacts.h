#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// What the system knows of a process. All answers are empty or 0 when it has ended.
class MORVEX_EXPORT ProcessFacts
{
public:
    explicit ProcessFacts(qint64 processId);

    /// Also after its end, until its parent has asked for its status.
    bool exists() const;
    /// Not after its end, also when its parent has not asked for its status yet.
    bool isRunning() const;
    /// Whether somebody has stopped it, by SIGSTOP, say.
    bool isStopped() const;
    qint64 parent() const;
    /// In memory, in bytes.
    quint64 usedMemory() const;
    /// What it has used of processors, in milliseconds.
    quint64 totalTime() const;
    /// As it was when the program was started; null when it was not set.
    QString environmentVariable(const QString &name) const;
    QString workingDirectory() const;
    /// The Qt that it was built with, as far as its libraries say that: "Qt 5.15.8", "Qt 6.4.2";
    /// empty for one without libraries of Qt.
    QString toolkit() const;

private:
    QByteArray content(const char *file) const;

    QString m_directory;
};

} // namespace Morvex
