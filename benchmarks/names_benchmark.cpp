// Names of objects as script code, and the order of recorded events beside a plain sort of them.

#include "ratio.h"
#include "runner/javascriptobjectmap.h"
#include "test/eventrecorder.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <deque>
#include <random>

#include <benchmark/benchmark.h>

using namespace Morvex;

namespace {

void writeNames(const QString &path, int count)
{
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    for (int i = 0; i < count; ++i)
        file.write("names.item" + QByteArray::number(i) + " = {text: \"Item " +
                   QByteArray::number(i) + "\", type: \"QPushButton\"};\n");
    file.write("// MORVEX_INSERT_OBJECT_NAMES_HERE\n");
}

// Prints nothing, so that the order alone is measured.
class SilentRecorder : public EventRecorder
{
public:
    SilentRecorder()
        : EventRecorder(true, false, nullptr)
    {
    }

    void recordEvent(const EventData &event) override { benchmark::DoNotOptimize(event.snooze()); }
    QString recordSnooze(int) override { return {}; }
    QString recordObjectWait(const QString &, int) override { return {}; }
    QString recordItemWait(const QString &, const QString &, int) override { return {}; }
    QString recordCellWait(const QString &, int, int, int) override { return {}; }
};

// Of three applications, which the user changes between now and then, as they come from three
// connections: nearly in order.
std::deque<EventData> makeEvents(int count)
{
    std::minstd_rand random(1);
    std::deque<EventData> events;
    for (int i = 0; i < count; ++i) {
        EventData event(EventData::METHOD_CALL);
        event.setMethodName(QStringLiteral("click"));
        event.setObjectName(QStringLiteral("{text='Save' type='QPushButton'}"));
        event.addArgument({QString::number(i), EventDataArg::NUMBER});
        event.setContextId(i / 50 % 3);
        event.setTime(QTime(0, 0).addMSecs(i));
        event.setSequence(static_cast<quint64>(i) + random() % 20);
        events.push_back(event);
    }
    return events;
}

} // namespace

static void addNames(benchmark::State &state)
{
    const QTemporaryDir dir;
    const QString path = dir.filePath("names.js");
    for (auto _ : state) {
        state.PauseTiming();
        writeNames(path, 10000);
        state.ResumeTiming();
        JavaScriptObjectMap map(path);
        for (int i = 0; i < 1000; ++i)
            map.getSymbolicName(
                QStringLiteral("{text='New %1' window={text='Item 7' type='QPushButton'}}").arg(i),
                true);
        if (!map.save())
            state.SkipWithError("the names could not be saved");
    }
}
BENCHMARK(addNames)->Unit(benchmark::kMillisecond);

static void orderEvents(benchmark::State &state)
{
    const auto events = makeEvents(100000);
    MorvexBenchmark::Ratio ratio;
    for (auto _ : state) {
        SilentRecorder recorder;
        for (const EventData &event : events)
            recorder.queueEvent(event);
        auto sorted = events;
        ratio.measure([&] { recorder.dequeueEvents(); },
                      [&] { std::stable_sort(sorted.begin(), sorted.end()); });
        benchmark::DoNotOptimize(sorted);
    }
    state.counters["to stable_sort"] = ratio.value();
}
BENCHMARK(orderEvents)->Unit(benchmark::kMillisecond);

// The script engine wants an application.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
