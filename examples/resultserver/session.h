#pragma once

#include "message.h"
#include "receivedrun.h"

#include <QDir>
#include <QObject>
#include <QTimer>

#include <memory>

class QWebSocket;

/// What all sessions share.
struct ServerSettings
{
    QDir data;
    QByteArray token;
};

/// The connection of one run. Ends with a report, also when the connection is lost; then deletes
/// itself.
class Session : public QObject
{
    Q_OBJECT

public:
    Session(const ServerSettings &settings, QWebSocket *socket, QObject *parent);
    ~Session() override;

private Q_SLOTS:
    void onMessage(const QByteArray &message);
    void onDisconnected();

private:
    void limitMessages(quint64 size);
    void handle(qint64 code, MessageReader &reader, const QByteArray &message);
    void begin(MessageReader &reader);
    void addEntry(MessageReader &reader, const QByteArray &message);
    void addFile(MessageReader &reader);
    void addVideoData(MessageReader &reader);
    void moveInVideo(MessageReader &reader);
    void end(MessageReader &reader);

    QString makeReport();
    void answer(const QString &text = {}, int code = 0);
    void answerStored(bool isStored);
    void refuse(const QString &reason);
    void say(const QString &text) const;

    const ServerSettings &m_settings;
    QWebSocket *m_socket;
    QTimer m_beginTimer;
    QString m_reportName;
    std::unique_ptr<ReceivedRun> m_run;
    // Of the message that is being handled.
    int m_serial = -1;
    bool m_isRefused = false;
};
