// Keys and clicks of a user that are recorded, beside the same that are just delivered.

#include "qtbackend/qtinspector.h"
#include "ratio.h"

#include <QApplication>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QWindow>

#include <benchmark/benchmark.h>

QT_BEGIN_NAMESPACE
extern Q_GUI_EXPORT void qt_handleKeyEvent(QWindow *window, QEvent::Type type, int key,
                                           Qt::KeyboardModifiers modifiers, const QString &text,
                                           bool isRepeated, ushort count);
QT_END_NAMESPACE

using namespace Morvex;

namespace {

const int repeats = 200;

// With as many widgets as a large window has.
class Form : public QWidget
{
public:
    Form()
    {
        auto *layout = new QGridLayout(this);
        for (int i = 0; i < 240; ++i) {
            auto *button = new QPushButton(QString::number(i));
            button->setObjectName(QStringLiteral("button%1").arg(i));
            layout->addWidget(button, i / 12, i % 12);
        }
        m_field.setObjectName(QStringLiteral("field"));
        layout->addWidget(&m_field);
        show();
        activateWindow();
        m_field.setFocus();
        QCoreApplication::processEvents();
    }

    void type()
    {
        m_field.clear();
        for (int i = 0; i < repeats; ++i) {
            for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
                qt_handleKeyEvent(windowHandle(), type, Qt::Key_A, Qt::NoModifier,
                                  QStringLiteral("a"), false, 1);
            QCoreApplication::processEvents();
        }
    }

private:
    QLineEdit m_field;
};

void BM_RecordedKey(benchmark::State &state)
{
    using MorvexBenchmark::computedSecondsOf;
    Form form;
    double recorded = std::numeric_limits<double>::max();
    double delivered = recorded;
    int count = 0;
    for (auto _ : state) {
        delivered = std::min(delivered, computedSecondsOf([&form] { form.type(); }));
        QtInspector inspector;
        inspector.record([&count](const QVariantMap &) { ++count; });
        recorded = std::min(recorded, computedSecondsOf([&form] { form.type(); }));
    }
    state.counters["events"] = count;
    state.counters["delivered_us"] = delivered / repeats * 1e6;
    state.counters["recorded_us"] = recorded / repeats * 1e6;
    state.counters["ratio"] = recorded / delivered;
}
BENCHMARK(BM_RecordedKey);

} // namespace
