// A server that morvexrunner uploads to, and that makes web reports of what it gets.

#include "replay.h"
#include "session.h"
#include "shared/environment.h"
#include "shared/files/filelock.h"
#include "test/cancellation.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRandomGenerator>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QUrl>
#include <QWebSocket>
#include <QWebSocketServer>

#include <csignal>
#include <cstdio>

namespace {

using Morvex::Cancellation;

const int handshakeTimeoutMs = 10000;
const int tokenNumbers = 4;

Cancellation *signalled = nullptr;

void handleSignal(int)
{
    signalled->request();
}

int fail(const QString &error)
{
    std::fprintf(stderr, "resultserver: %s\n", qUtf8Printable(error));
    return 1;
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray freshToken()
{
    quint32 numbers[tokenNumbers];
    QRandomGenerator::system()->fillRange(numbers);
    return QByteArray(reinterpret_cast<const char *>(numbers), sizeof numbers).toHex();
}

// Null configuration when one of the two can't be read.
QSslConfiguration encryption(const QString &certificateFile, const QString &keyFile)
{
    const QSslCertificate certificate(contentOf(certificateFile));
    QSslKey key(contentOf(keyFile), QSsl::Rsa);
    if (key.isNull())
        key = QSslKey(contentOf(keyFile), QSsl::Ec);
    if (certificate.isNull() || key.isNull())
        return QSslConfiguration();
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificate);
    configuration.setPrivateKey(key);
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    return configuration;
}

// Of a server that was killed.
void addLeftRuns(const QDir &data)
{
    const QDir incoming(data.filePath(QStringLiteral(".incoming")));
    for (const QString &run : incoming.entryList({QStringLiteral("run-*")}, QDir::Dirs)) {
        const QString error = addToReport(data, incoming.filePath(run));
        if (!error.isEmpty())
            fail(QStringLiteral("the run '%1' stays: %2").arg(incoming.filePath(run), error));
    }
}

// Returns an error text, empty on success.
QString configureEncryption(const QCommandLineParser &parser, QWebSocketServer &server)
{
    if (parser.isSet("certificate") != parser.isSet("key"))
        return QStringLiteral("--certificate and --key belong together");
    if (!parser.isSet("certificate"))
        return {};
    const QSslConfiguration configuration =
        encryption(parser.value("certificate"), parser.value("key"));
    if (configuration.isNull())
        return QStringLiteral("cannot read a certificate from '%1' or its key from '%2'")
            .arg(parser.value("certificate"), parser.value("key"));
    server.setSslConfiguration(configuration);
    return {};
}

// Returns an error text, empty on success.
QString listen(const QCommandLineParser &parser, QWebSocketServer &server)
{
    const QHostAddress address(parser.value("listen"));
    if (address.isNull())
        return QStringLiteral("--listen takes an address such as 127.0.0.1, not '%1'")
            .arg(parser.value("listen"));
    bool isPort = false;
    const quint16 port = parser.value("port").toUShort(&isPort);
    if (!isPort)
        return QStringLiteral("--port takes a number from 0 to 65535, not '%1'")
            .arg(parser.value("port"));
    if (!server.listen(address, port))
        return QStringLiteral("cannot listen at port %1: %2")
            .arg(parser.value("port"), server.errorString());
    return {};
}

void showUsage(const QWebSocketServer &server, const QByteArray &token)
{
    QUrl url;
    url.setScheme(server.secureMode() == QWebSocketServer::SecureMode ? "https" : "http");
    url.setHost(server.serverAddress().toString());
    url.setPort(server.serverPort());
    std::printf("Upload with:\n  morvexrunner --reportgen 'quillbase,%s/project/demo?token=%s' "
                "SUITE\n",
                qUtf8Printable(url.toString()), token.constData());
    std::fflush(stdout);
}

void sayRefused(const QString &reason)
{
    std::printf("a connection was refused: %s\n", qUtf8Printable(reason));
    std::fflush(stdout);
}

void parse(QCommandLineParser &parser, const QCoreApplication &application)
{
    parser.setApplicationDescription(
        QStringLiteral("Receives uploads of morvexrunner and makes a web report per project and "
                       "batch."));
    parser.addHelpOption();
    parser.addOptions(
        {{"port", "The port; 0 takes a free one (default: 8080).", "number", "8080"},
         {"data", "Where the reports go (default: results).", "directory", "results"},
         {"token-file", "A file with the token; without one a token is made up.", "file"},
         {"certificate", "A certificate (PEM), for https.", "file"},
         {"key", "The key of the certificate (PEM).", "file"},
         {"listen", "The address to listen at (default: 127.0.0.1).", "address", "127.0.0.1"}});
    parser.process(application);
}

// Ctrl-C ends the server with all runs in their reports.
void quitOnSignals(Cancellation &cancellation, const QCoreApplication &application)
{
    signalled = &cancellation;
    QObject::connect(&cancellation, &Cancellation::requested, &application,
                     &QCoreApplication::quit);
    std::signal(SIGINT, handleSignal);
    std::signal(SIGTERM, handleSignal);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parse(parser, application);
    if (Morvex::Environment::getVariable("MORVEX_PREFIX").empty())
        Morvex::Environment::setVariable("MORVEX_PREFIX", MORVEX_BUILD_PREFIX);
    ServerSettings settings{QDir(QDir().absoluteFilePath(parser.value("data"))), freshToken()};
    if (!settings.data.mkpath(QStringLiteral(".incoming")))
        return fail(QStringLiteral("cannot create the directory '%1'").arg(settings.data.path()));
    const Morvex::FileLock lock(settings.data.filePath(QStringLiteral(".incoming")));
    if (lock.isHeldElsewhere())
        return fail(
            QStringLiteral("another server uses the directory '%1'").arg(settings.data.path()));
    if (parser.isSet("token-file"))
        settings.token = contentOf(parser.value("token-file")).trimmed();
    if (settings.token.isEmpty())
        return fail(QStringLiteral("there is no token in '%1'").arg(parser.value("token-file")));
    addLeftRuns(settings.data);

    QWebSocketServer server(QStringLiteral("resultserver"), parser.isSet("certificate")
                                                                ? QWebSocketServer::SecureMode
                                                                : QWebSocketServer::NonSecureMode);
    QString error = configureEncryption(parser, server);
    if (!error.isEmpty())
        return fail(error);
    server.setHandshakeTimeout(handshakeTimeoutMs);
    QObject::connect(&server, &QWebSocketServer::newConnection, [&server, &settings] {
        while (QWebSocket *socket = server.nextPendingConnection())
            new Session(settings, socket, &server);
    });

    QObject::connect(&server, &QWebSocketServer::serverError,
                     [&server] { sayRefused(server.errorString()); });

    Cancellation cancellation;
    quitOnSignals(cancellation, application);
    error = listen(parser, server);
    if (!error.isEmpty())
        return fail(error);
    showUsage(server, parser.isSet("token-file") ? "TOKEN" : settings.token);
    const int status = QCoreApplication::exec();
    qDeleteAll(server.findChildren<Session *>());
    return status;
}
