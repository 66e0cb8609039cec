#include "support/display.h"

#include <QStandardPaths>

#include <gtest/gtest.h>

namespace MorvexTest {
namespace {

void end(QProcess *process)
{
    process->terminate();
    if (!process->waitForFinished(5000))
        process->kill();
    process->waitForFinished(5000);
}

} // namespace

bool Display::isPossible()
{
    for (const char *program : {"Xvfb", "openbox", "xdotool"}) {
        if (!QStandardPaths::findExecutable(program).isEmpty())
            continue;
        if (!qEnvironmentVariableIsEmpty("CI"))
            ADD_FAILURE() << program << " is missing: scripts/install-deps.sh installs it";
        return false;
    }
    return true;
}

Display::Display(const QString &size)
{
    m_server.start("Xvfb", {"-displayfd", "1", "-screen", "0", size + "x24", "-nolisten", "tcp"});
    while (!m_server.canReadLine() && m_server.waitForReadyRead(30000)) {
    }
    m_name = ":" + QString::fromLatin1(m_server.readLine()).trimmed();
    auto environment = QProcessEnvironment::systemEnvironment();
    addTo(&environment);
    m_windowManager.setProcessEnvironment(environment);
    m_windowManager.start("openbox", {"--sm-disable"});
    m_windowManager.waitForStarted();
}

Display::~Display()
{
    end(&m_windowManager);
    end(&m_server);
}

void Display::addTo(QProcessEnvironment *environment) const
{
    environment->insert("DISPLAY", m_name);
    environment->insert("QT_QPA_PLATFORM", "xcb");
    for (const char *name : {"WAYLAND_DISPLAY", "XAUTHORITY"})
        environment->remove(name);
}

} // namespace MorvexTest
