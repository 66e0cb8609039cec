#pragma once

#include "support/display.h"
#include "support/scriptfixture.h"

#include <QProcess>

#include <memory>

namespace MorvexTest {

/// Records what a user does on a display, by a program that sends events to the X server.
class RecordingFixture : public ScriptFixture
{
protected:
    void SetUp() override;
    void TearDown() override;

    /// Starts to record tst_recorded and waits until the window of that title, or of that class in
    /// lower case, is there.
    void record(const QStringList &options, const QStringList &program, const QString &window);
    /// A line each: arguments of xdotool; "at X Y" clicks in the window, with more of what a click
    /// takes after it, "hover X Y" moves the mouse there, "drag X Y X Y" with the button pressed,
    /// "window TITLE" chooses another window once it is there, "sleep SECONDS" gives the
    /// application that time. The next one comes when the application has handled this; with the
    /// word "popup" when there is a further window, too.
    void act(const QByteArray &lines);
    /// Again and again until the journal has the text.
    void actUntil(const QByteArray &line, const QByteArray &text);
    /// Waits until the journal has the text.
    void waitFor(const QByteArray &text);
    /// The script that the recorder has written when the application has ended.
    QByteArray finish();
    /// The same when the recorder is ended, by a signal.
    QByteArray interrupt();
    /// Removes the test case and the names.
    void removeRecorded();

    QByteArray journal() const;
    QByteArray script() const;
    static int xdotool(const QStringList &arguments, QByteArray *output = nullptr);

    std::unique_ptr<Display> display;
    QProcess recorder;
    QByteArray recorderErrors;

private:
    void drag(const QStringList &places);
    void sleep(double seconds);
    int windowCount() const;
    void choose(const QString &title);

    QString m_window;
};

} // namespace MorvexTest
