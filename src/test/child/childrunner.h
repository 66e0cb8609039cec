#pragma once

#include <QDeadlineTimer>
#include <QProcess>
#include <QString>

#include <sys/types.h>

namespace Morvex {

/// A child runner in a process group of its own, so that what its script started can be ended with
/// it, and which does not outlive this process. Its output goes to that of this process; it writes
/// no summary.
class ChildRunner : public QProcess
{
public:
    /// The child learns when it is going to be ended.
    explicit ChildRunner(const QDeadlineTimer &deadline);

    /// Asks the group to end, and kills it when it does not.
    void end();

    /// What a test case started may survive its orderly end; this ends that, too.
    static void killGroup(pid_t processGroup);

protected:
    // Runs between fork and exec.
    void setupChildProcess() override;

private:
    void signalGroup(int signal) const;
};

} // namespace Morvex
