#include "test/upload/quillbaseprivate.h"

#include "test/openreportfile.h"
#include "test/upload/handover.h"
#include "test/upload/quillbaseworker.h"
#include "test/upload/uploadlines.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimerEvent>

#include <memory>

namespace Morvex {

QuillbasePrivate::Waits QuillbasePrivate::defaultWaits;

QuillbasePrivate::QuillbasePrivate(const QUrl &address, TestReportGenerator::TestType type)
    : url(address)
    , testType(type)
{
    connect(this, &QThread::finished, this, &QObject::deleteLater);
}

QuillbasePrivate::~QuillbasePrivate() = default;

bool QuillbasePrivate::startThread()
{
    start(QThread::InheritPriority);
    m_hasWorker = semaphore.tryAcquire(1, m_waits.startup);
    return m_hasWorker;
}

void QuillbasePrivate::run()
{
    const auto ownWorker = std::make_unique<QuillbaseWorker>(
        &semaphore, tempDirOverride.isEmpty() ? tempDir.path() : tempDirOverride, testType);
    worker = ownWorker.get();
    semaphore.release();
    exec();
}

bool QuillbasePrivate::startConnection(QString *error)
{
    UploadAddress address;
    const QString addressError = parseUploadTarget(url, &address);
    if (!addressError.isEmpty()) {
        *error = addressError;
        return false;
    }
    post(new SetupEvent(address));
    if (!semaphore.tryAcquire(1, m_waits.connection)) {
        writeErrorLine("morvexrunner: quillbase: '" + address.url.toString().toUtf8() +
                       "' has not accepted the connection in time; is it an address of " +
                       url.scheme().toUtf8() + "?\n");
        return false;
    }
    return worker->isConnected();
}

// A permit that is left over would end the next wait before its time. Dropped any later, it could
// be the one that the event itself has brought.
void QuillbasePrivate::post(QEvent *event)
{
    while (semaphore.tryAcquire()) {
    }
    noteHandOver(event);
    QCoreApplication::postEvent(worker, event);
}

bool QuillbasePrivate::waitForWakeUp()
{
    return worker->isConnected() && semaphore.tryAcquire(1, m_waits.wakeUp);
}

void QuillbasePrivate::send(const TestResult::Entry &entry, QObject *receiver)
{
    // Nobody would wait for it, and the queue would grow.
    if (!worker->isConnected()) {
        noteLoss();
        return;
    }
    post(new EntryEvent(entry, receiver));
    waitForWakeUp();
}

// A server may have said that it has all when there was more to come.
void QuillbasePrivate::noteLoss()
{
    if (!m_hasNotedLoss && !worker->hasReportedCutOff())
        reportCutOff({});
    m_hasNotedLoss = true;
}

void QuillbasePrivate::sendAndWaitForAnswer(const TestResult::Entry &entry)
{
    if (!worker->isConnected())
        noteLoss();
    post(new EntryEvent(entry, this, ++m_waitNumber));
    timerId = startTimer(m_waits.answer, Qt::CoarseTimer);
    eventLoop.exec();
    // An application that is quitting turns no loop.
    endWait();
}

void QuillbasePrivate::customEvent(QEvent *event)
{
    noteArrival(event);
    const auto *answer = dynamic_cast<AnswerEvent *>(event);
    if (answer && answer->wait == m_waitNumber)
        endWait();
}

void QuillbasePrivate::timerEvent(QTimerEvent *event)
{
    if (event->timerId() == timerId)
        endWait();
}

void QuillbasePrivate::endWait()
{
    if (timerId == 0)
        return;
    killTimer(timerId);
    timerId = 0;
    eventLoop.quit();
}

// Each message that leaves brings a permit too: the end of the connection is what counts.
void QuillbasePrivate::waitForDone()
{
    const QDeadlineTimer deadline(m_waits.done);
    while (worker->isConnected() &&
           semaphore.tryAcquire(1, static_cast<int>(deadline.remainingTime()))) {
    }
    if (!worker->isConnected())
        return;
    noteIncompleteReport();
    writeErrorLine("morvexrunner: quillbase: the server did not confirm the end of the upload\n");
}

void QuillbasePrivate::shutDown(QuillbasePrivate *data)
{
    if (data->m_hasWorker) {
        data->post(new ShutdownEvent);
        data->waitForDone();
        data->m_hasWorker = false;
    }
    data->exit(0);
    if (!data->wait(data->m_waits.threadEnd))
        return;
    // Nobody may turn the event loop from here on.
    const QPointer<QuillbasePrivate> self(data);
    QCoreApplication::sendPostedEvents(self);
    if (self)
        QCoreApplication::sendPostedEvents(self, QEvent::DeferredDelete);
}

} // namespace Morvex
