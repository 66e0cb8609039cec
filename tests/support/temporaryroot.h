#pragma once

#include "support/environmentguard.h"

#include <QTemporaryDir>

namespace MorvexTest {

/// A directory for the temporary files of this test program and of all that it starts, which is
/// removed with what killed processes leave: a later one with the number of such a process would
/// find it.
class TemporaryRoot
{
    QTemporaryDir m_dir;
    EnvironmentGuard m_guard{"TMPDIR", m_dir.path().toLocal8Bit()};
};

} // namespace MorvexTest
