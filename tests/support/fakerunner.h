#pragma once

#include <QByteArray>
#include <QString>

#include "support/environmentguard.h"

#include <QTemporaryDir>

namespace MorvexTest {

/// A prefix whose bin/morvexrunner is a shell script, for children that do what a real one does
/// only by accident. Sets MORVEX_PREFIX as long as it lives.
class FakeRunner
{
public:
    /// The script finds the path of the report socket in $socket. What it was called with is in
    /// arguments().
    explicit FakeRunner(const QByteArray &script);

    /// One argument an element, of the last call.
    QStringList arguments() const;

private:
    QTemporaryDir m_dir;
    EnvironmentGuard m_prefix;
};

} // namespace MorvexTest
