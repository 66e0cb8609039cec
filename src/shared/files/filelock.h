#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// Shows other processes, and other objects in this one, that something is in use. Ends with the
/// object or the process, however that ends. Keeps nobody from reading or writing.
class MORVEX_EXPORT FileLock
{
public:
    /// @p path names a file, which is created and never removed, or a directory, which has to
    /// exist. Waits so long for another one to end; by default not at all.
    explicit FileLock(const QString &path, int waitMilliseconds = 0);
    ~FileLock();

    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    bool isHeld() const { return m_isHeld; }
    /// Neither is true when there is no knowing: the file can't be created or opened, or its file
    /// system has no locks.
    bool isHeldElsewhere() const { return m_isHeldElsewhere; }

private:
    void tryLock();

    int m_descriptor;
    bool m_isHeld = false;
    bool m_isHeldElsewhere = false;
};

} // namespace Morvex
