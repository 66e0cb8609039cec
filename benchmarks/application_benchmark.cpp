// What it costs to ask an application in a process of its own: a property against a byte that its
// main thread sends back, a picture against drawing the same window and one copy, a name among a
// thousand objects against one walk over as many, and the processor time of its start with and
// without the agent.

#include "objectmodel/class.h"
#include "objectmodel/property.h"
#include "ratio.h"
#include "remote/remoteapplication.h"
#include "remote/remoteinspector.h"
#include "shared/richimage.h"
#include "subjectwindow.h"

#include <QProcess>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <cstdlib>
#include <limits>
#include <memory>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Morvex;

namespace {

void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

std::unique_ptr<RemoteApplication> start(const QStringList &arguments = {})
{
    RemoteApplication::Start start;
    start.command = QStringList{QStringLiteral(MORVEX_SUBJECT_PROGRAM)} + arguments;
    start.prefix = QStringLiteral(MORVEX_BENCHMARK_PREFIX);
    start.keptVariables = QStringList{QStringLiteral("MORVEX_ECHO")};
    QString error;
    auto application = RemoteApplication::start(start, &error);
    require(application != nullptr, qUtf8Printable(error));
    return application;
}

// The other end of the subject's echo.
class EchoPeer
{
public:
    EchoPeer()
        : m_path(m_dir.filePath(QStringLiteral("s")).toLocal8Bit())
    {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, m_path.constData(), sizeof address.sun_path);
        m_listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        require(::bind(m_listener, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0 &&
                    ::listen(m_listener, 1) == 0,
                "no socket");
        qputenv("MORVEX_ECHO", m_path);
    }
    ~EchoPeer()
    {
        ::close(m_listener);
        ::close(m_peer);
    }

    void accept() { m_peer = ::accept(m_listener, nullptr, nullptr); }

    void exchange() const
    {
        char byte = 0;
        require(::write(m_peer, &byte, 1) == 1 && ::read(m_peer, &byte, 1) == 1, "no echo");
    }

private:
    QTemporaryDir m_dir;
    QByteArray m_path;
    int m_listener = -1;
    int m_peer = -1;
};

void propertyRead(benchmark::State &state)
{
    EchoPeer echo;
    const auto application = start();
    echo.accept();
    const SharedPtr<Object> label =
        application->inspector()->waitForObject(QStringLiteral("label500"), 10000, nullptr);
    require(bool(label), "no label");
    const Property *text = label->objectClass()->property(QStringLiteral("text"));
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] { require(text->get(label)->valueText() == QLatin1String("label 500"), "wrong"); },
            [&] { echo.exchange(); }));
    }
    state.counters["ratio_to_echo"] = ratio.value();
}
BENCHMARK(propertyRead)->UseManualTime()->Unit(benchmark::kMicrosecond);

void picture(benchmark::State &state)
{
    const auto application = start();
    RemoteInspector *inspector = application->inspector();
    const SharedPtr<Object> window =
        inspector->waitForObject(QStringLiteral("subject"), 10000, nullptr);
    require(bool(window), "no window");
    const std::unique_ptr<QWidget> same(MorvexBenchmark::makeSubjectWindow());
    same->show();
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] {
                const Screenshot taken = Screenshot::fromVariant(
                    inspector->callFunction(QStringLiteral("grabObjectScreenshot"),
                                            {window->id(), QVariantMap(), 0}, nullptr));
                require(taken.size() == QSize(1920, 1080), "no picture");
            },
            [&] {
                const QImage drawn = same->grab().toImage();
                require(drawn.copy().size() == QSize(1920, 1080), "no picture");
            }));
    }
    state.counters["ratio_to_drawing_and_copy"] = ratio.value();
}
BENCHMARK(picture)->UseManualTime()->Unit(benchmark::kMillisecond);

int countNamed(const QObject *object, const QString &name)
{
    int count = object->objectName() == name;
    for (const QObject *child : object->children())
        count += countNamed(child, name);
    return count;
}

void findAmongAThousand(benchmark::State &state)
{
    const auto application = start();
    const std::unique_ptr<QWidget> same(MorvexBenchmark::makeSubjectWindow());
    const QString name = QStringLiteral("label999");
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure(
            [&] {
                require(bool(application->inspector()->findObject(name, nullptr)), "not found");
            },
            [&] { require(countNamed(same.get(), name) == 1, "not found"); }));
    }
    state.counters["ratio_to_one_walk"] = ratio.value();
}
BENCHMARK(findAmongAThousand)->UseManualTime()->Unit(benchmark::kMicrosecond);

double processorSecondsOfChildren()
{
    struct rusage usage = {};
    ::getrusage(RUSAGE_CHILDREN, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

// With the watcher, which is a process of its own.
void programStart(benchmark::State &state)
{
    const auto computed = [](const std::function<void()> &work) {
        const double before = processorSecondsOfChildren();
        work();
        return processorSecondsOfChildren() - before;
    };
    MorvexBenchmark::Ratio ratio(computed);
    for (auto _ : state) {
        state.SetIterationTime(ratio.measure([] { start(); },
                                             [] {
                                                 QProcess::execute(
                                                     QStringLiteral(MORVEX_SUBJECT_PROGRAM),
                                                     {QStringLiteral("--quit")});
                                             }));
    }
    state.counters["share_of_the_agent"] = ratio.value() - 1;
}
BENCHMARK(programStart)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);

} // namespace
