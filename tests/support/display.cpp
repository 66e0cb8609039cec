#include "support/display.h"

#include "support/files.h"
#include "support/windowping.h"

#include <QElapsedTimer>
#include <QStandardPaths>
#include <QThread>

#include <gtest/gtest.h>

namespace MorvexTest {
namespace {

// It takes no clicks: each would wait for it while the mouse goes on, and arrive where that is
// then.
const char windowManagerSettings[] = "<openbox_config xmlns='http://openbox.org/3.4/rc'>"
                                     "<keyboard><keybind key='A-F4'><action name='Close'/>"
                                     "</keybind></keyboard><mouse/></openbox_config>";

void end(QProcess *process)
{
    process->terminate();
    if (!process->waitForFinished(5000))
        process->kill();
    process->waitForFinished(5000);
}

// Until there is one that answers, windows can't be activated.
void waitForWindowManager(const QProcessEnvironment &environment)
{
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < 30000; QThread::msleep(20)) {
        QProcess question;
        question.setProcessEnvironment(environment);
        question.start("xdotool", {"get_desktop"});
        if (question.waitForFinished(5000) && question.exitStatus() == QProcess::NormalExit &&
            question.exitCode() == 0)
            return;
    }
    ADD_FAILURE() << "no window manager answers on " << environment.value("DISPLAY").toStdString();
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
    // Without -noreset, the server throws out whoever connects while its only client leaves.
    // Without -r, it repeats a key when whoever presses it is held up.
    m_server.start("Xvfb", {"-displayfd", "1", "-noreset", "-r", "-screen", "0", size + "x24",
                            "-nolisten", "tcp"});
    while (!m_server.canReadLine() && m_server.waitForReadyRead(30000)) {
    }
    m_name = ":" + QString::fromLatin1(m_server.readLine()).trimmed();
    auto environment = QProcessEnvironment::systemEnvironment();
    addTo(&environment);
    m_windowManager.setProcessEnvironment(environment);
    writeFile(m_dir.filePath("openbox.xml"), windowManagerSettings);
    m_windowManager.start("openbox",
                          {"--sm-disable", "--config-file", m_dir.filePath("openbox.xml")});
    m_windowManager.waitForStarted();
    waitForWindowManager(environment);
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

void Display::waitUntilHandled(const QString &window) const
{
    WindowPing ping(m_name, window.toUInt());
    // What it had read before the answer is handled before it reads the next one.
    for (int i = 0; i < 2; ++i)
        EXPECT_TRUE(ping.isAnswered()) << "the program of window " << window.toStdString();
}

} // namespace MorvexTest
