#pragma once

#include "support/environmentguard.h"

#include <QDir>
#include <QTemporaryDir>

namespace MorvexTest {

/// A directory for the temporary files of this test program and of all that it starts, which is
/// removed with what killed processes leave: a later one with the number of such a process would
/// find it.
class TemporaryRoot
{
    // Sockets need what there is for a path.
    QTemporaryDir m_dir{QDir::tempPath() + QLatin1String("/t-XXXXXX")};
    EnvironmentGuard m_guard{"TMPDIR", m_dir.path().toLocal8Bit()};
};

} // namespace MorvexTest
