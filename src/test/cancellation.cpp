#include "test/cancellation.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace Morvex {

Cancellation::Cancellation()
    : m_wakeUp(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (m_wakeUp < 0)
        qFatal("Cancellation: no event descriptor can be had");
    m_notifier = new QSocketNotifier(m_wakeUp, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, [this] {
        m_notifier->setEnabled(false);
        Q_EMIT requested();
    });
}

Cancellation::~Cancellation()
{
    delete m_notifier;
    ::close(m_wakeUp);
}

void Cancellation::request() noexcept
{
    m_requested = true;
    const quint64 one = 1;
    // It fails only when the descriptor is set to the limit already.
    [[maybe_unused]] const ssize_t written = ::write(m_wakeUp, &one, sizeof one);
}

void Cancellation::killRunningAttempt() const noexcept
{
    const pid_t processGroup = m_processGroup;
    if (processGroup > 0)
        ::kill(-processGroup, SIGKILL);
}

} // namespace Morvex
