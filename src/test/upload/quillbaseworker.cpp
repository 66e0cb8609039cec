#include "test/upload/quillbaseworker.h"

#include "test/reportgeneratorshared.h"
#include "test/upload/entrymessage.h"
#include "test/upload/handover.h"
#include "test/upload/uploadfile.h"
#include "test/upload/uploadlines.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkRequest>
#include <QSemaphore>
#include <QSslConfiguration>

#include <locale>
#include <memory>

namespace Morvex {
namespace {

// The codes of the messages.
const int sessionCode = 5;
const int entryCode = 105;
const int fileCode = 201;
const int shutdownCode = 301;
const int videoDataCode = 400;
const int videoSeekCode = 401;

// An answer is a line; this is what a server may fill the memory with.
const quint64 maxAnswerSize = 64 * 1024 * 1024;

// The fields of one message.
class MessageWriter
{
public:
    MessageWriter(int code, int serial)
        : m_buffer(std::make_unique<MessageBuf>())
        , m_stream(m_buffer.get())
    {
        m_stream.imbue(std::locale::classic());
        m_stream << code << '|' << serial;
    }

    template <typename Number>
    MessageWriter &number(Number value)
    {
        m_stream << '|' << value;
        return *this;
    }

    MessageWriter &text(const QByteArray &value)
    {
        m_stream << '|' << WriteString(value);
        return *this;
    }

    MessageWriter &content(const char *data, int size)
    {
        number(size);
        m_stream << '|';
        m_stream.write(data, size);
        return *this;
    }

    std::ostream &stream() { return m_stream; }

    MessageBuf *take() { return m_buffer.release(); }

private:
    std::unique_ptr<MessageBuf> m_buffer;
    std::ostream m_stream;
};

void postBack(QObject *receiver, QEvent *event)
{
    noteHandOver(event);
    QCoreApplication::postEvent(receiver, event);
}

} // namespace

QuillbaseWorker::QuillbaseWorker(QSemaphore *wakeUp, const QString &directory,
                                 TestReportGenerator::TestType type)
    : semaphore(wakeUp)
    , tempDir(directory)
    , socket(QString(), QWebSocketProtocol::Version13, nullptr)
    , testType(type)
{
    socket.setMaxAllowedIncomingMessageSize(maxAnswerSize);
    socket.setMaxAllowedIncomingFrameSize(maxAnswerSize);
    connectSocket();
}

QuillbaseWorker::~QuillbaseWorker()
{
    socket.disconnect(this);
}

void QuillbaseWorker::connectSocket()
{
    connect(&socket, &QWebSocket::binaryMessageReceived, this, &QuillbaseWorker::wsBinaryMessage);
    connect(&socket, &QWebSocket::connected, this, &QuillbaseWorker::wsConnected);
    connect(&socket, &QWebSocket::disconnected, this, &QuillbaseWorker::wsDisconnected);
    connect(&socket, QOverload<QAbstractSocket::SocketError>::of(&QWebSocket::error), this,
            &QuillbaseWorker::wsError);
    connect(&socket, &QWebSocket::bytesWritten, this, &QuillbaseWorker::wsBytesWritten);
}

// One event brings one permit, in however many pieces its bytes leave: with more of them the main
// thread would post faster than this one sends.
void QuillbaseWorker::customEvent(QEvent *event)
{
    noteArrival(event);
    isHandlingEvent = true;
    hasWritten = false;
    handleEvent(event);
    isHandlingEvent = false;
    if (hasWritten)
        semaphore->release();
}

void QuillbaseWorker::handleEvent(QEvent *event)
{
    switch (static_cast<int>(event->type())) {
    case entryEventType:
        handleEntryEvent(*static_cast<EntryEvent *>(event));
        break;
    case setupEventType:
        setupConnection(*static_cast<SetupEvent *>(event));
        break;
    case videoDataEventType:
        handleVideoData(*static_cast<VideoDataEvent *>(event));
        break;
    case videoDataSeekEventType:
        handleVideoDataSeek(*static_cast<VideoDataSeekEvent *>(event));
        break;
    case shutdownEventType:
        sendShutdown();
        break;
    default:
        break;
    }
}

void QuillbaseWorker::setupConnection(const SetupEvent &setup)
{
    project = setup.address.project;
    token = setup.address.token;
    labels = setup.address.labels;
    batch = setup.address.batch;
    url = setup.address.url;

    QString path = url.path();
    while (path.endsWith(QLatin1Char('/')))
        path.chop(1);
    url.setPath(path + QLatin1String("/event"));
    QNetworkRequest request(url);
    if (url.scheme() == QLatin1String("wss")) {
        // Result servers within a company have certificates of their own making.
        QSslConfiguration configuration = request.sslConfiguration();
        configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
        request.setSslConfiguration(configuration);
        socket.setSslConfiguration(configuration);
    }
    socket.open(request);
}

void QuillbaseWorker::wsConnected()
{
    connected = 1;
    semaphore->release();
    MessageWriter writer(sessionCode, serial++);
    writer.text(project.toUtf8()).text(token.toUtf8()).number(labels.size());
    for (const QString &label : labels)
        writer.text(label.toUtf8());
    writer.text(batch.toUtf8()).stream() << '\n';
    sendMessage(writer.take());
}

void QuillbaseWorker::handleEntryEvent(const EntryEvent &event)
{
    const TestResult::ResultType type = event.entry.type;
    if (type == TestResult::STARTVIDEOCAPTURE || type == TestResult::ENDVIDEOCAPTURE) {
        setVideoDevice(event.object);
        waiter = nullptr;
    } else {
        waiter = event.object;
    }
    waitNumber = event.wait;
    waitSerial = serial;
    handleEntry(event.entry);
}

void QuillbaseWorker::handleEntry(const TestResult::Entry &entry)
{
    setTestSuiteAndTestCasePath(testType, entry, &suitePath, &casePath);
    const EntryMessage message(entry, {suitePath, casePath, tempDir});
    traceEntry(entry, message);
    MessageWriter writer(entryCode, serial++);
    writeEntryFields(writer.stream(), entry, message);
    writer.stream() << '\n';
    sendMessage(writer.take());

    sendFile(message.resourceFile, message.resource);
    sendFile(message.screenshotFile, message.screenshot);
    if (!message.tableDiff.empty())
        sendFileContent(message.resource, message.tableDiff.data(),
                        static_cast<int>(message.tableDiff.size()));
    socket.flush();
}

void QuillbaseWorker::sendFile(const QString &path, const std::string &name)
{
    // A file can be large, and nobody would get it.
    if (!isConnected())
        return;
    if (const std::optional<QByteArray> content = readUploadFile(path))
        sendFileContent(name, content->constData(), content->size());
}

void QuillbaseWorker::sendFileContent(const std::string &name, const char *data, int size)
{
    MessageWriter writer(fileCode, serial++);
    writer.text(QByteArray::fromStdString(name)).content(data, size);
    sendMessage(writer.take());
}

void QuillbaseWorker::handleVideoData(const VideoDataEvent &event)
{
    setVideoDevice(event.device);
    videoChunks[serial] = event.data.size();
    MessageWriter writer(videoDataCode, serial++);
    writer.text(event.fileName).content(event.data.constData(), event.data.size());
    sendMessage(writer.take());
}

void QuillbaseWorker::handleVideoDataSeek(const VideoDataSeekEvent &event)
{
    MessageWriter writer(videoSeekCode, serial++);
    writer.text(event.fileName).number(event.offset);
    sendMessage(writer.take());
}

void QuillbaseWorker::sendShutdown()
{
    sendMessage(MessageWriter(shutdownCode, serial++).take());
    socket.flush();
}

// Takes over the message. What can no longer be sent keeps nobody waiting.
void QuillbaseWorker::sendMessage(MessageBuf *message)
{
    const std::unique_ptr<MessageBuf> owned(message);
    sendStarted = true;
    if (isConnected()) {
        socket.sendBinaryMessage(owned->bytes());
        return;
    }
    acknowledgeOpenChunks();
    wakeWaiter();
    semaphore->release();
}

void QuillbaseWorker::wsBinaryMessage(const QByteArray &message)
{
    const QJsonObject answer = QJsonDocument::fromJson(message).object();
    const QString text = answer.value(QLatin1String("message")).toString();
    const int code = answer.value(QLatin1String("code")).toInt();
    const int answered = answer.value(QLatin1String("serial")).toInt();
    if (waitSerial == answered)
        wakeWaiter();
    const auto chunk = videoChunks.find(answered);
    if (chunk != videoChunks.end()) {
        acknowledge(chunk->second);
        videoChunks.erase(chunk);
    }
    if (!text.isEmpty())
        writeOutputLine("msg '" + text.toUtf8() + "'\n");
    isDone = code == 0 && text.contains(QLatin1String("Done"));
    if (code != 0)
        writeOutputLine("Fatal! " + QByteArray::number(code) + '\n');
    if (code != 0 || isDone) {
        endUpload();
        socket.close(QWebSocketProtocol::CloseCodeNormal);
    }
}

void QuillbaseWorker::wsDisconnected()
{
    endUpload();
}

void QuillbaseWorker::wsError(QAbstractSocket::SocketError error)
{
    writeErrorLine(url.toString().toUtf8() + " ws error " + QByteArray::number(error) + " (" +
                   socket.errorString().toUtf8() + ")\n");
    endUpload();
}

void QuillbaseWorker::wsBytesWritten(qint64)
{
    if (isHandlingEvent)
        hasWritten = sendStarted;
    else if (sendStarted)
        semaphore->release();
}

// The main thread may wait for a connection that has ended. The word is stored before the release,
// since a thread that is woken reads it, and after the note, which is looked for by what reads it.
void QuillbaseWorker::endUpload()
{
    if (isConnected() && !isDone) {
        isCutOff = true;
        reportCutOff(socket.closeReason().toUtf8());
    }
    connected = 0;
    acknowledgeOpenChunks();
    wakeWaiter();
    semaphore->release();
}

void QuillbaseWorker::wakeWaiter()
{
    if (waiter)
        postBack(waiter, new AnswerEvent(waitNumber));
    waiter = nullptr;
}

// The writer of a video that another one follows gets what is still open.
void QuillbaseWorker::setVideoDevice(QObject *device)
{
    if (videoDevice == device)
        return;
    acknowledgeOpenChunks();
    videoDevice = device;
}

void QuillbaseWorker::acknowledge(int size)
{
    if (videoDevice)
        postBack(videoDevice, new BytesWritten(size));
}

void QuillbaseWorker::acknowledgeOpenChunks()
{
    for (const auto &[chunkSerial, size] : videoChunks)
        acknowledge(size);
    videoChunks.clear();
}

} // namespace Morvex
