#include "session.h"

#include "replay.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QWebSocket>

#include <algorithm>
#include <cstdio>

namespace {

const int beginTimeoutMs = 10000;
const int maxNameSize = 200;

// What a stranger may send, and what a run may: a file of 1 GB with its name.
const quint64 maxFirstMessageSize = 64 * 1024;
const quint64 maxMessageSize = (1024 + 16) * 1024 * 1024;

// The codes of an upload that is ended.
const int refusedCode = 1;
const int diskCode = 2;

QString printable(QString text)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c.category() == QChar::Other_Control; },
        QLatin1Char('?'));
    return text;
}

// A name of one directory, and of no hidden one.
bool isFolderName(const QString &name)
{
    return !name.isEmpty() && name.toUtf8().size() <= maxNameSize &&
           !name.startsWith(QLatin1Char('.')) && !name.contains(QLatin1Char('/')) &&
           name == printable(name);
}

// Takes as long for each token of that length.
bool areEqual(const QByteArray &a, const QByteArray &b)
{
    int differences = a.size() == b.size() ? 0 : 1;
    for (int i = 0; i < std::min(a.size(), b.size()); ++i)
        differences |= a.at(i) ^ b.at(i);
    return differences == 0;
}

} // namespace

Session::Session(const ServerSettings &settings, QWebSocket *socket, QObject *parent)
    : QObject(parent)
    , m_settings(settings)
    , m_socket(socket)
{
    socket->setParent(this);
    limitMessages(maxFirstMessageSize);
    connect(socket, &QWebSocket::binaryMessageReceived, this, &Session::onMessage);
    connect(socket, &QWebSocket::textMessageReceived, this,
            [this] { refuse(QStringLiteral("a text message")); });
    connect(socket, &QWebSocket::disconnected, this, &Session::onDisconnected);
    connect(&m_beginTimer, &QTimer::timeout, this,
            [this] { refuse(QStringLiteral("no session message in time")); });
    m_beginTimer.setSingleShot(true);
    m_beginTimer.start(beginTimeoutMs);
}

// A frame is held in memory until it is whole, whatever message it belongs to.
void Session::limitMessages(quint64 size)
{
    m_socket->setMaxAllowedIncomingMessageSize(size);
    m_socket->setMaxAllowedIncomingFrameSize(size);
}

// The server ends: what has come is kept.
Session::~Session()
{
    m_socket->disconnect(this);
    makeReport();
}

void Session::onDisconnected()
{
    const QString reason = m_socket->closeReason();
    const QString why = reason.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(reason);
    if (m_run)
        say(QStringLiteral("the connection was lost, the run is cut off") + why);
    else if (m_reportName.isEmpty() && !m_isRefused)
        say(QStringLiteral("the connection has ended before a run began") + why);
    makeReport();
    deleteLater();
}

void Session::onMessage(const QByteArray &message)
{
    if (m_isRefused)
        return;
    MessageReader reader(message);
    const qint64 code = reader.number();
    const qint64 serial = reader.number();
    if (!reader.isOk() || serial != ++m_serial)
        refuse(QStringLiteral("a message without its number"));
    else
        handle(code, reader, message);
}

void Session::handle(qint64 code, MessageReader &reader, const QByteArray &message)
{
    // One run a connection: a name is there from its begin on.
    const bool isInPlace = code == SessionCode ? m_reportName.isEmpty() : bool(m_run);
    if (!isInPlace) {
        refuse(QStringLiteral("a message of code %1 out of place").arg(code));
        return;
    }
    switch (code) {
    case SessionCode:
        begin(reader);
        break;
    case EntryCode:
        addEntry(reader, message);
        break;
    case FileCode:
        addFile(reader);
        break;
    case VideoDataCode:
        addVideoData(reader);
        break;
    case VideoSeekCode:
        moveInVideo(reader);
        break;
    case EndCode:
        end(reader);
        break;
    default:
        refuse(QStringLiteral("a message of the unknown code %1").arg(code));
        break;
    }
}

void Session::begin(MessageReader &reader)
{
    const std::optional<SessionMessage> session = readSession(reader);
    if (!session)
        return refuse(QStringLiteral("a damaged session message"));
    if (!areEqual(session->token.toUtf8(), m_settings.token))
        return refuse(QStringLiteral("a wrong token"));
    if (!isFolderName(session->project))
        return refuse(QStringLiteral("a project name that is no folder name"));
    if (!session->batch.isEmpty() && !isFolderName(session->batch))
        return refuse(QStringLiteral("a batch name that is no folder name"));
    m_reportName = session->batch.isEmpty()
                       ? session->project + QLatin1String("/report")
                       : session->project + QLatin1String("/batches/") + session->batch;
    m_run = std::make_unique<ReceivedRun>(m_settings.data.filePath(QStringLiteral(".incoming")),
                                          m_reportName);
    m_beginTimer.stop();
    limitMessages(maxMessageSize);
    say(QStringList{QStringLiteral("a run begins"), session->labels.join(QLatin1String(", "))}.join(
        session->labels.isEmpty() ? "" : ", labels: "));
    answerStored(m_run->isOk());
}

void Session::addEntry(MessageReader &reader, const QByteArray &message)
{
    if (!readEntry(reader))
        return refuse(QStringLiteral("a damaged entry"));
    answerStored(m_run->addEntry(message));
}

void Session::addFile(MessageReader &reader)
{
    const QByteArray name = reader.bytes();
    const QByteArray content = reader.bytes();
    if (!reader.isAtEnd(""))
        return refuse(QStringLiteral("a damaged file message"));
    if (!m_run->hasRoomFor(content.size()))
        return answer(QStringLiteral("the files of this run are too large, one is left out"));
    answerStored(m_run->addFile(name, content));
}

void Session::addVideoData(MessageReader &reader)
{
    const QByteArray name = reader.bytes();
    const QByteArray content = reader.bytes();
    if (!reader.isAtEnd(""))
        return refuse(QStringLiteral("a damaged video message"));
    if (!m_run->hasRoomFor(content.size()))
        return answer(QStringLiteral("the files of this run are too large, a video is cut off"));
    answerStored(m_run->writeVideo(name, content));
}

void Session::moveInVideo(MessageReader &reader)
{
    const QByteArray name = reader.bytes();
    const qint64 position = reader.number();
    if (!reader.isAtEnd(""))
        return refuse(QStringLiteral("a damaged video message"));
    if (!m_run->seekVideo(name, position))
        return refuse(QStringLiteral("a position that no video has"));
    answer();
}

void Session::end(MessageReader &reader)
{
    if (!reader.isAtEnd(""))
        return refuse(QStringLiteral("a damaged end"));
    const QString error = makeReport();
    answer(error.isEmpty() ? QStringLiteral("Done")
                           : QStringLiteral("Done, but there is no report yet: %1").arg(error));
}

// Returns an error text, empty on success.
QString Session::makeReport()
{
    if (!m_run)
        return {};
    m_run->finish();
    const QString error = addToReport(m_settings.data, m_run->directory());
    m_run.reset();
    if (error.isEmpty())
        say(QLatin1String("report: ") + reportPage(m_settings.data, m_reportName));
    else
        say(QStringLiteral("%1; the run is kept for the next start of this server").arg(error));
    return error;
}

void Session::answerStored(bool isStored)
{
    if (isStored)
        return answer();
    say(QStringLiteral("the run can't be stored, is the disk full?"));
    answer(QStringLiteral("the run can't be stored"), diskCode);
}

void Session::answer(const QString &text, int code)
{
    const QJsonObject object{{QStringLiteral("message"), text},
                             {QStringLiteral("code"), code},
                             {QStringLiteral("serial"), m_serial}};
    m_socket->sendBinaryMessage(QJsonDocument(object).toJson(QJsonDocument::Compact));
    // A client gives up on an answer of which a part is late, and many messages may wait here.
    m_socket->flush();
}

// What a stranger has sent is not shown: it could be anything.
void Session::refuse(const QString &reason)
{
    if (m_isRefused)
        return;
    m_isRefused = true;
    say(QStringLiteral("refused: ") + reason);
    answer(QStringLiteral("refused: ") + reason, refusedCode);
    m_socket->close(QWebSocketProtocol::CloseCodePolicyViolated);
}

void Session::say(const QString &text) const
{
    const QString who = m_reportName.isEmpty() ? m_socket->peerAddress().toString() : m_reportName;
    std::printf("%s: %s\n", qUtf8Printable(who), qUtf8Printable(printable(text)));
    std::fflush(stdout);
}
