#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <vector>

namespace MorvexTest {

/// A result server in a process of its own, which decodes what it gets; see uploadserver.py.
class UploadServer
{
public:
    enum Encryption { Plain, Encrypted };

    explicit UploadServer(const QString &behaviour = "ok", Encryption encryption = Plain);
    ~UploadServer();

    /// Of a project, with a token.
    QString address() const;
    /// A value of --reportgen.
    QString value() const { return "quillbase," + address(); }

    /// The fields of each message, once the connection has ended.
    std::vector<QJsonArray> messages() const;

    /// Reads on from a server that stalls, or ends it.
    void kill();

private:
    QTemporaryDir m_dir;
    QProcess m_process;
    QString m_address;
};

} // namespace MorvexTest
