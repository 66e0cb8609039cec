#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace MorvexTest {

/// An X display of its own, drawn into memory, with a window manager. It ends with this object.
class Display
{
public:
    explicit Display(const QString &size = "800x600");
    ~Display();

    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    /// Whether the programs for it are installed. Without them a test is skipped, in CI it fails.
    static bool isPossible();

    /// Makes programs with windows use this display.
    void addTo(QProcessEnvironment *environment) const;

    /// Waits until the program of that window, by its number, has handled all input of before. Not
    /// when the window no longer exists.
    void waitUntilHandled(const QString &window) const;

    const QString &name() const { return m_name; }

private:
    QTemporaryDir m_dir;
    QProcess m_server;
    QProcess m_windowManager;
    QString m_name;
};

} // namespace MorvexTest
