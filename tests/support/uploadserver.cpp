#include "support/uploadserver.h"

#include "support/files.h"

#include <QDeadlineTimer>
#include <QJsonDocument>
#include <QThread>

#include <gtest/gtest.h>

namespace MorvexTest {

UploadServer::UploadServer(const QString &behaviour, Encryption encryption)
{
    QStringList arguments{MORVEX_SOURCE_DIR "/tests/support/uploadserver.py", behaviour,
                          m_dir.filePath("log")};
    if (encryption == Encrypted) {
        const QString script = MORVEX_SOURCE_DIR "/scripts/make-certificate.sh";
        EXPECT_EQ(QProcess::execute(script, {m_dir.path()}), 0) << "needs openssl";
        arguments << m_dir.filePath("server.crt") << m_dir.filePath("server.key");
    }
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start("/usr/bin/python3", arguments);
    m_process.waitForReadyRead(30000);
    const QByteArray port = m_process.readLine().trimmed();
    EXPECT_GT(port.toInt(), 0) << "needs python3-websockets";
    m_address = QString("%1://127.0.0.1:%2/project/p?token=secret")
                    .arg(encryption == Encrypted ? "https" : "http", QString(port));
}

UploadServer::~UploadServer()
{
    kill();
}

void UploadServer::kill()
{
    m_process.kill();
    m_process.waitForFinished();
}

QString UploadServer::address() const
{
    return m_address;
}

std::vector<QJsonArray> UploadServer::messages() const
{
    QByteArray log;
    for (const QDeadlineTimer deadline(30000); !deadline.hasExpired(); QThread::msleep(10)) {
        log = readFile(m_dir.filePath("log"));
        if (log.endsWith("[\"closed\"]\n"))
            break;
    }
    std::vector<QJsonArray> messages;
    for (const QByteArray &line : log.split('\n')) {
        const QJsonArray fields = QJsonDocument::fromJson(line).array();
        if (fields.size() > 1)
            messages.push_back(fields);
        EXPECT_NE(fields.at(0), "error") << line.constData();
    }
    return messages;
}

} // namespace MorvexTest
