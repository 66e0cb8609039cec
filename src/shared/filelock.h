#pragma once

#include "morvex_export.h"

#include <QString>

namespace Morvex {

/// Tells other processes, and other objects in this one, that a file is in use. Ends with the
/// object or the process, however that ends. Keeps nobody from reading or writing.
class MORVEX_EXPORT FileLock
{
public:
    /// Does not wait. @p path has to exist.
    explicit FileLock(const QString &path);
    ~FileLock();

    FileLock(const FileLock &) = delete;
    FileLock &operator=(const FileLock &) = delete;

    /// False when there is no knowing, as on a file system without locks.
    bool isHeldElsewhere() const { return m_isHeldElsewhere; }

private:
    int m_descriptor;
    bool m_isHeldElsewhere = false;
};

} // namespace Morvex
