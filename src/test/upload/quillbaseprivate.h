#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QEventLoop>
#include <QPointer>
#include <QSemaphore>
#include <QTemporaryDir>
#include <QThread>
#include <QUrl>

namespace Morvex {

class QuillbaseWorker;
class VideoOutput;

/// The thread of an upload, and what the main thread does about it: posts events to the worker and
/// waits for it. Everything but run is called in the main thread, in which the object lives.
/// Deletes itself when the thread has ended.
class MORVEX_EXPORT QuillbasePrivate : public QThread
{
public:
    /// The longest waits, in milliseconds.
    struct Waits
    {
        int startup = 5000;
        int connection = 5000;
        /// For each entry, piece of video and seek.
        int wakeUp = 5000;
        /// At the end of each test case and of the run.
        int answer = 15000;
        int done = 30000;
        int threadEnd = 5000;
    };
    /// What new objects start with.
    static Waits defaultWaits;

    QuillbasePrivate(const QUrl &address, TestReportGenerator::TestType type);
    ~QuillbasePrivate() override;

    /// False when the thread is not ready in time.
    bool startThread();
    [[nodiscard]] bool startConnection(QString *error);

    /// @p receiver gets what the server confirms; may be null.
    void send(const TestResult::Entry &entry, QObject *receiver);
    /// Turns the event loop until the server has answered.
    void sendAndWaitForAnswer(const TestResult::Entry &entry);

    /// False before the worker is there and once the end was reported.
    bool isTakingEvents() const { return m_hasWorker; }
    /// Takes over the event, which goes to the worker.
    void post(QEvent *event);
    /// True when the worker made a step in time; false without a wait when it is not connected.
    bool waitForWakeUp();

    /// Reports the end to the server, ends the thread and deletes @p data as soon as it has ended.
    static void shutDown(QuillbasePrivate *data);

    QPointer<VideoOutput> video;

protected:
    void run() override;
    void customEvent(QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

private:
    void noteLoss();
    void endWait();
    void waitForDone();

    QSemaphore semaphore;
    QuillbaseWorker *worker = nullptr;
    QTemporaryDir tempDir;
    // Takes the place of the temporary directory when set.
    QString tempDirOverride;
    QUrl url;
    QEventLoop eventLoop;
    TestReportGenerator::TestType testType;
    int timerId = 0;
    Waits m_waits = defaultWaits;
    int m_waitNumber = 0;
    bool m_hasWorker = false;
    bool m_hasNotedLoss = false;
};

} // namespace Morvex
