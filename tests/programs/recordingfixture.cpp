#include "programs/recordingfixture.h"

#include "support/files.h"

#include <QDir>
#include <QElapsedTimer>
#include <QPoint>
#include <QThread>

#include <csignal>

namespace MorvexTest {
namespace {

const int limitMs = 30000;

template <typename Condition>
bool waitUntil(const Condition &holds, int milliseconds = limitMs)
{
    QElapsedTimer timer;
    timer.start();
    while (!holds()) {
        if (timer.elapsed() > milliseconds)
            return false;
        QThread::msleep(20);
    }
    return true;
}

} // namespace

void RecordingFixture::SetUp()
{
    if (!Display::isPossible())
        GTEST_SKIP();
    display = std::make_unique<Display>("1000x800");
    display->addTo(&runner.environment);
    qputenv("DISPLAY", display->name().toUtf8());
}

void RecordingFixture::TearDown()
{
    recorder.kill();
    recorder.waitForFinished(limitMs);
}

int RecordingFixture::xdotool(const QStringList &arguments, QByteArray *output)
{
    QProcess process;
    process.start("xdotool", arguments);
    process.waitForFinished(limitMs);
    if (output)
        *output = process.readAllStandardOutput();
    return process.exitCode();
}

void RecordingFixture::record(const QStringList &options, const QStringList &program,
                              const QString &window)
{
    recorder.setProcessEnvironment(runner.environment);
    recorder.start(RunnerProcess::program(),
                   options + QStringList{"--record", "tst_recorded", runner.suitePath()} + program);
    recorder.waitForStarted(limitMs);
    waitFor("\"start\"}");
    choose(window);
}

void RecordingFixture::choose(const QString &title)
{
    QByteArray found;
    const auto isThere = [&] {
        return xdotool(
                   {"search", "--onlyvisible", title[0].isLower() ? "--class" : "--name", title},
                   &found) == 0;
    };
    ASSERT_TRUE(waitUntil(isThere))
        << title.toStdString() << recorder.readAllStandardError().constData();
    m_window = QString::fromLatin1(found).section('\n', 0, 0);
    xdotool({"windowactivate", "--sync", m_window});
    display->waitUntilHandled(m_window);
}

int RecordingFixture::windowCount() const
{
    QByteArray found;
    xdotool({"search", "--onlyvisible", "--maxdepth", "1", "--name", ".*"}, &found);
    return found.count('\n');
}

void RecordingFixture::act(const QByteArray &lines)
{
    for (const QString &line : QString::fromUtf8(lines).split('\n', Qt::SkipEmptyParts)) {
        QStringList words = line.trimmed().split(' ');
        const bool isOpening = words.removeAll("popup") > 0;
        const int windows = isOpening ? windowCount() : 0;
        const QString what = words.takeFirst();
        const QStringList place{"mousemove", "--window", m_window};
        if (what == "at")
            xdotool(place + words.mid(0, 2) + QStringList("click") +
                    (words.size() > 2 ? words.mid(2) : QStringList("1")));
        else if (what == "hover")
            xdotool(place + words);
        else if (what == "drag")
            drag(words);
        else if (what == "type")
            xdotool({"type", "--delay", "5", words.join(' ')});
        else if (what == "window")
            choose(words.join(' '));
        else if (what == "sleep")
            sleep(words.first().toDouble());
        else
            xdotool(QStringList(what) + words);
        display->waitUntilHandled(m_window);
        EXPECT_TRUE(!isOpening || waitUntil([&] { return windowCount() > windows; }))
            << line.toStdString();
    }
}

// As what is dragged is not looked at before it has been moved some way.
void RecordingFixture::drag(const QStringList &places)
{
    const QPoint from(places[0].toInt(), places[1].toInt());
    const QPoint to(places[2].toInt(), places[3].toInt());
    const int steps = 8;
    for (int i = 0; i <= steps; ++i) {
        const QPoint place = from + (to - from) * i / steps;
        xdotool({"mousemove", "--window", m_window, QString::number(place.x()),
                 QString::number(place.y())});
        if (i == 0)
            xdotool({"mousedown", "1"});
        display->waitUntilHandled(m_window);
    }
    xdotool({"mouseup", "1"});
    sleep(0.2);
}

// In parts, each of which the application has time for.
void RecordingFixture::sleep(double seconds)
{
    const unsigned long partMs = 50;
    for (double passed = 0; passed < seconds; passed += partMs / 1000.0) {
        QThread::msleep(partMs);
        display->waitUntilHandled(m_window);
    }
}

void RecordingFixture::actUntil(const QByteArray &line, const QByteArray &text)
{
    // The recorder may write it a while after the application has reported it.
    const int reportMs = 2000;
    const auto isWritten = [&] { return journal().contains(text); };
    EXPECT_TRUE(waitUntil([&] {
        act(line);
        return waitUntil(isWritten, reportMs);
    })) << journal().constData();
}

void RecordingFixture::waitFor(const QByteArray &text)
{
    EXPECT_TRUE(waitUntil([&] { return journal().contains(text); }))
        << text.constData() << "\n"
        << journal().constData() << recorder.readAllStandardError().constData();
}

QByteArray RecordingFixture::journal() const
{
    return readFile(runner.suitePath() + "/tst_recorded.recording");
}

QByteArray RecordingFixture::script() const
{
    return readFile(runner.suitePath() + "/tst_recorded/script.js");
}

QByteArray RecordingFixture::interrupt()
{
    ::kill(static_cast<pid_t>(recorder.processId()), SIGTERM);
    return finish();
}

QByteArray RecordingFixture::finish()
{
    EXPECT_TRUE(recorder.waitForFinished(limitMs));
    recorderErrors = recorder.readAllStandardError();
    EXPECT_EQ(recorder.exitCode(), 0) << recorderErrors.constData();
    EXPECT_EQ(journal(), QByteArray());
    return script();
}

void RecordingFixture::removeRecorded()
{
    QDir(runner.suitePath() + "/tst_recorded").removeRecursively();
    QFile::remove(runner.suitePath() + "/names.js");
}

} // namespace MorvexTest
