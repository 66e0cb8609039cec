// An application to measure. With a descriptor in MORVEX_ECHO it answers each byte from there in an
// event of its main thread: the least that any question to it can take.

#include "subjectwindow.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>

#include <memory>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

class Echo : public QObject
{
public:
    explicit Echo(int descriptor)
        : m_descriptor(descriptor)
    {
        std::thread([this] {
            char byte = 0;
            while (::read(m_descriptor, &byte, 1) == 1)
                QCoreApplication::postEvent(this, new QEvent(QEvent::User));
        }).detach();
    }

    bool event(QEvent *event) override
    {
        const char byte = 1;
        return event->type() == QEvent::User ? ::write(m_descriptor, &byte, 1) == 1
                                             : QObject::event(event);
    }

private:
    int m_descriptor;
};

int connectTo(const QByteArray &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ::connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    return descriptor;
}

} // namespace

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    const std::unique_ptr<QWidget> window(MorvexBenchmark::makeSubjectWindow());
    window->show();
    std::unique_ptr<Echo> echo;
    const QByteArray path = qgetenv("MORVEX_ECHO");
    if (!path.isEmpty())
        echo = std::make_unique<Echo>(connectTo(path));
    if (application.arguments().contains(QStringLiteral("--quit")))
        QTimer::singleShot(0, &application, &QCoreApplication::quit);
    return QApplication::exec();
}
