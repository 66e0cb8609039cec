// The dump of a window with a thousand widgets, and what counting what users do costs a click.

#include "ratio.h"

#include "objectmodel/objectmap.h"
#include "qtbackend/qtinspector.h"

#include <QCoreApplication>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <benchmark/benchmark.h>

using namespace Morvex;
using MorvexBenchmark::Ratio;

namespace {

const int groups = 10;
const int rowsOfGroup = 33;

struct Window
{
    Window()
    {
        widget.setObjectName(QStringLiteral("window"));
        auto *columns = new QHBoxLayout(&widget);
        for (int i = 0; i < groups; ++i) {
            auto *group = new QWidget;
            columns->addWidget(group);
            auto *rows = new QVBoxLayout(group);
            for (int row = 0; row < rowsOfGroup; ++row) {
                rows->addWidget(new QLabel(QString::number(row)));
                rows->addWidget(new QLineEdit(QString::number(i)));
                rows->addWidget(new QPushButton(QString::number(i)));
            }
        }
        widget.findChild<QPushButton *>()->setObjectName(QStringLiteral("button"));
        widget.show();
    }

    QWidget widget;
};

QByteArray installedFilter()
{
    QFile file(QStringLiteral(MORVEX_BENCHMARK_PREFIX "/etc/qt_visualvp_filter.xml"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

int idOf(QtInspector &inspector, const char *name)
{
    return inspector.findObject(QString::fromLatin1(name), nullptr)->id();
}

// Some of the widgets, and more than are there.
void addNames(ObjectMap *map, int names)
{
    for (int i = 0; i < names; ++i)
        map->insert(QStringLiteral(":Button %1").arg(i),
                    ObjectName(QStringLiteral("{type='QPushButton' text='%1' "
                                              "window={name='window'} occurrence='%2'}")
                                   .arg(QString::number(i % 100), QString::number(i / 100 + 1))));
}

// The limit is one walk over all widgets that asks each for its class and one property.
void BM_DumpOfAThousandWidgets(benchmark::State &state, int names)
{
    Window window;
    ObjectMap map;
    addNames(&map, names);
    ObjectMap::install(&map);
    QtInspector inspector;
    const QVariantList arguments{
        idOf(inspector, "window"), installedFilter(),
        QByteArray("<elementfilter version='1'><picture taken='no'/></elementfilter>")};
    Ratio ratio;
    double shortest = 1;
    for (auto _ : state) {
        const double seconds = ratio.measure(
            [&] {
                benchmark::DoNotOptimize(
                    inspector.callFunction(QStringLiteral("dumpObject"), arguments, nullptr));
            },
            [&] {
                for (const QWidget *widget : window.widget.findChildren<QWidget *>())
                    benchmark::DoNotOptimize(widget->property("enabled").toString());
            });
        shortest = qMin(shortest, seconds);
    }
    ObjectMap::install(nullptr);
    state.counters["ms"] = shortest * 1000;
    state.counters["ratio"] = ratio.value();
}
BENCHMARK_CAPTURE(BM_DumpOfAThousandWidgets, plain, 0)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_DumpOfAThousandWidgets, with_object_map, 2000)->Unit(benchmark::kMillisecond);

// Takes events and does nothing, so that what is measured is the way to it.
class IdleButton : public QPushButton
{
protected:
    bool event(QEvent *) override { return true; }
};

double secondsOfAPress(QPushButton *button)
{
    const int presses = 20000;
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(1, 1), Qt::LeftButton, Qt::LeftButton,
                      Qt::NoModifier);
    return MorvexBenchmark::secondsOf([&] {
               for (int i = 0; i < presses; ++i) {
                   press.setTimestamp(static_cast<ulong>(i + 1));
                   QCoreApplication::sendEvent(button, &press);
               }
           }) /
           presses;
}

// What counting adds to a press and a release, against a whole click with its repainting.
void BM_ClickThatIsCounted(benchmark::State &state)
{
    const int clicks = 100;
    Window window;
    auto *idle = new IdleButton;
    window.widget.layout()->addWidget(idle);
    QtInspector inspector;
    const int id = idOf(inspector, "button");
    double click = 1;
    double plain = 1;
    double counted = 1;
    for (auto _ : state) {
        click = qMin(click, MorvexBenchmark::secondsOf([&] {
                                for (int i = 0; i < clicks; ++i)
                                    inspector.callFunction(QStringLiteral("clickObject"), {id},
                                                           nullptr);
                            }) / clicks);
        plain = qMin(plain, secondsOfAPress(idle));
        // It counts while it lives.
        QtInspector counting;
        counting.callFunction(QStringLiteral("countUsage"), {}, nullptr);
        counted = qMin(counted, secondsOfAPress(idle));
    }
    state.counters["added_us"] = (counted - plain) * 1e6;
    state.counters["ratio"] = (counted - plain) / click;
}
BENCHMARK(BM_ClickThatIsCounted)->Unit(benchmark::kMillisecond);

} // namespace
