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

// With so many widgets, of which a user types into two fields in turns.
class Form : public QWidget
{
public:
    explicit Form(int widgets)
    {
        auto *layout = new QGridLayout(this);
        layout->setSpacing(0);
        for (int i = 0; i < widgets; ++i) {
            auto *button = new QPushButton(QString::number(i));
            button->setObjectName(QStringLiteral("button%1").arg(i));
            button->setMinimumSize(1, 1);
            layout->addWidget(button, i / 100, i % 100);
        }
        for (QLineEdit &field : m_fields)
            layout->addWidget(&field);
        m_fields[0].setObjectName(QStringLiteral("field"));
        m_fields[1].setObjectName(QStringLiteral("otherField"));
        resize(2000, 2000);
        show();
        activateWindow();
        QCoreApplication::processEvents();
    }

    void type(int keysInOneField)
    {
        for (int i = 0; i < repeats; ++i) {
            QLineEdit &field = m_fields[i / keysInOneField % 2];
            if (i % keysInOneField == 0)
                field.setFocus();
            for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
                qt_handleKeyEvent(windowHandle(), type, Qt::Key_A, Qt::NoModifier,
                                  QStringLiteral("a"), false, 1);
            QCoreApplication::processEvents();
        }
        for (QLineEdit &field : m_fields)
            field.clear();
    }

private:
    QLineEdit m_fields[2];
};

void BM_RecordedKey(benchmark::State &state)
{
    using MorvexBenchmark::computedSecondsOf;
    Form form(static_cast<int>(state.range(0)));
    const auto type = [&] { form.type(static_cast<int>(state.range(1))); };
    double recorded = std::numeric_limits<double>::max();
    double delivered = recorded;
    int count = 0;
    for (auto _ : state) {
        delivered = std::min(delivered, computedSecondsOf(type));
        QtInspector inspector;
        inspector.record([&count](const QVariantMap &) { ++count; });
        recorded = std::min(recorded, computedSecondsOf(type));
    }
    state.counters["events"] = count;
    state.counters["delivered_us"] = delivered / repeats * 1e6;
    state.counters["recorded_us"] = recorded / repeats * 1e6;
    state.counters["ratio"] = recorded / delivered;
}
BENCHMARK(BM_RecordedKey)
    ->ArgNames({"widgets", "keysInOneField"})
    ->ArgsProduct({{240, 10000}, {1, 20}})
    ->MinTime(0.1);

} // namespace
