#pragma once

#include "test/testreportgenerator.h"
#include "test/upload/messagebuf.h"
#include "test/upload/uploadevents.h"

#include <QObject>
#include <QStringList>
#include <QUrl>
#include <QWebSocket>

#include <atomic>
#include <map>

class QSemaphore;

namespace Morvex {

/// Talks to the result server on the thread that it was made on: takes posted events, sends binary
/// messages and passes on what the server answers.
class QuillbaseWorker : public QObject
{
    Q_OBJECT

public:
    /// @p wakeUp gets a permit with each step that somebody may wait for.
    QuillbaseWorker(QSemaphore *wakeUp, const QString &directory,
                    TestReportGenerator::TestType type);
    ~QuillbaseWorker() override;

    /// From any thread. False from the moment on in which the upload ended, for whatever reason.
    bool isConnected() const { return connected != 0; }
    /// To be asked when it is no longer connected.
    bool hasReportedCutOff() const { return isCutOff; }

protected:
    void customEvent(QEvent *event) override;

private Q_SLOTS:
    void wsConnected();
    void wsDisconnected();
    void wsError(QAbstractSocket::SocketError error);
    void wsBinaryMessage(const QByteArray &message);
    void wsBytesWritten(qint64 bytes);

private:
    void connectSocket();
    void handleEvent(QEvent *event);
    void setupConnection(const SetupEvent &setup);
    void handleEntryEvent(const EntryEvent &event);
    void handleEntry(const TestResult::Entry &entry);
    void handleVideoData(const VideoDataEvent &event);
    void handleVideoDataSeek(const VideoDataSeekEvent &event);
    void sendShutdown();

    void sendFile(const QString &path, const std::string &name);
    void sendFileContent(const std::string &name, const char *data, int size);
    void sendMessage(MessageBuf *message);

    void setVideoDevice(QObject *device);
    void acknowledge(int size);
    void acknowledgeOpenChunks();
    void wakeWaiter();
    void endUpload();

    QSemaphore *semaphore;
    QUrl url;
    QString project;
    QString token;
    QStringList labels;
    QString batch;
    QString suitePath;
    QString casePath;
    QString tempDir;
    QWebSocket socket;
    TestReportGenerator::TestType testType;
    bool sendStarted = false;
    std::atomic<int> connected{0};
    // Of the next message.
    int serial = 0;
    int waitSerial = 0;
    QObject *waiter = nullptr;
    int waitNumber = 0;
    // Lives in the main thread until this worker no longer exists, whatever becomes of the device
    // itself.
    QObject *videoDevice = nullptr;
    // The sizes of what the server has not confirmed, by serial.
    std::map<int, int> videoChunks;
    bool isDone = false;
    // Written before connected, which the other thread reads first.
    bool isCutOff = false;
    bool isHandlingEvent = false;
    // Whether bytes have left during the event that is being handled.
    bool hasWritten = false;
};

} // namespace Morvex
