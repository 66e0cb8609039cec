#pragma once

#include "objectmodel/class.h"
#include "objectmodel/property.h"
#include "qtbackend/inputsequence.h"
#include "qtbackend/inspectortest.h"
#include "qtbackend/qtinspector.h"

QT_BEGIN_NAMESPACE
extern Q_GUI_EXPORT void qt_handleMouseEvent(QWindow *window, const QPointF &local,
                                             const QPointF &global, Qt::MouseButtons state,
                                             Qt::MouseButton button, QEvent::Type type,
                                             Qt::KeyboardModifiers modifiers, int timestamp);
QT_END_NAMESPACE

namespace MorvexTest {

/// A user with a mouse whose actions are recorded, and can be done again.
class RecordingUserTest : public InspectorTest
{
protected:
    void record()
    {
        window.show();
        QApplication::setActiveWindow(&window);
        recorder.record(
            [this](const QVariantMap &action) { m_actions[action["number"].toInt()] = action; });
    }

    using Place = std::function<QPair<QWidget *, QPoint>()>;

    /// In the middle of the widget.
    static Place in(QWidget *widget)
    {
        return [widget] { return qMakePair(widget, widget->rect().center()); };
    }
    static Place at(QWidget *widget, int x, int y)
    {
        return [widget, x, y] { return qMakePair(widget, QPoint(x, y)); };
    }

    // What is done by perform.
    void press(const Place &place, Qt::MouseButton button = Qt::LeftButton)
    {
        move(place);
        send(place, QEvent::MouseButtonPress, button);
    }
    void move(const Place &place, Qt::MouseButton pressed = Qt::NoButton)
    {
        send(place, QEvent::MouseMove, pressed);
    }
    void release(const Place &place, Qt::MouseButton button = Qt::LeftButton)
    {
        send(place, QEvent::MouseButtonRelease, button);
    }
    void click(const Place &place, Qt::MouseButton button = Qt::LeftButton)
    {
        m_time += 1000;
        clickAtOnce(place, button);
    }
    void clickAtOnce(const Place &place, Qt::MouseButton button = Qt::LeftButton)
    {
        press(place, button);
        release(place, button);
    }
    void drag(const Place &from, const Place &to)
    {
        m_time += 1000;
        press(from);
        for (int i = 0; i < 10; ++i)
            move(
                [from, to, i] {
                    const auto [start, first] = from();
                    const auto [end, last] = to();
                    const QPoint there = start->mapFromGlobal(end->mapToGlobal(last));
                    return qMakePair(start, first + (there - first) * (i + 1) / 10);
                },
                Qt::LeftButton);
        release(to);
    }
    /// At once.
    void turnWheel(const char *widget, int steps)
    {
        EXPECT_EQ(call("useMouse", widget, {"wheel", QVariantMap{{"down", steps}}}), QString());
    }

    /// What was recorded of it, a line for each action, with names of objects alone.
    QStringList perform()
    {
        input->add(nullptr);
        while (!input->isDone())
            QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
        QCoreApplication::processEvents();
        input = std::make_unique<Morvex::InputSequence>();
        performed = m_actions;
        m_actions.clear();
        QStringList lines;
        for (const QVariantMap &action : qAsConst(performed)) {
            if (action["what"] != "nothing")
                lines += lineOf(action);
        }
        return lines;
    }

    /// Does what was recorded last as a script does. Returns the first error text.
    QString replay()
    {
        for (const QVariantMap &action : qAsConst(performed)) {
            const QString error = action["what"] == "nothing" ? QString() : doAgain(action);
            if (!error.isEmpty())
                return lineOf(action) + ": " + error;
        }
        m_actions.clear();
        return {};
    }

    std::unique_ptr<Morvex::InputSequence> input = std::make_unique<Morvex::InputSequence>();
    Morvex::QtInspector recorder;
    QMap<int, QVariantMap> performed;

private:
    void send(const Place &place, QEvent::Type type, Qt::MouseButton button)
    {
        const int time = m_time += 10;
        input->add([place, type, button, time] {
            const auto [widget, where] = place();
            QWidget *top = widget->window();
            const bool isMove = type == QEvent::MouseMove;
            const bool isRelease = type == QEvent::MouseButtonRelease;
            qt_handleMouseEvent(top->windowHandle(), widget->mapTo(top, where),
                                widget->mapToGlobal(where),
                                isRelease ? Qt::MouseButtons() : Qt::MouseButtons(button),
                                isMove ? Qt::NoButton : button, type, Qt::NoModifier, time);
            return QString();
        });
    }

    static QString shortName(const QVariant &name)
    {
        const QString own = name.toString().section("name='", 1).section('\'', 0, 0);
        return own.isEmpty() ? name.toString() : own;
    }

    static QString textOf(const QVariant &value)
    {
        QStringList texts;
        if (value.userType() != QMetaType::QVariantList &&
            value.userType() != QMetaType::QVariantMap)
            return value.toString();
        for (const QVariant &part : value.toList())
            texts += textOf(part);
        const QVariantMap map = value.toMap();
        for (auto it = map.begin(); it != map.end(); ++it)
            texts += it.key() == "object" ? shortName(*it) : textOf(*it);
        return texts.join(' ');
    }

    static QString lineOf(const QVariantMap &action)
    {
        QStringList words{action["what"].toString(), shortName(action["object"])};
        for (const char *key : {"item", "x", "y", "button", "property", "value", "text", "to"}) {
            if (action.contains(key))
                words += textOf(action[key]);
        }
        return words.join(' ');
    }

    QString doAgain(QVariantMap action)
    {
        const QByteArray name = action["object"].toByteArray();
        const QString what = action["what"].toString();
        const QVariant item = action["item"];
        if (what == "set")
            return set(name, action["property"].toString(), action["value"]);
        if (what == "type")
            return call("typeText", name, {action["text"]});
        if (what == "close")
            return call("closeWindow", name);
        if (what != "click" && what != "doubleClick" && what != "drag")
            return call("useItem", name, {what, item, action["text"]});
        if (action.contains("button"))
            action["button"] = int(Qt::RightButton);
        QVariantMap to = action["to"].toMap();
        if (!to.isEmpty())
            to["object"] = find(to["object"].toString())->id();
        action["to"] = to;
        action.remove("object");
        return call("useMouse", name, {what, action});
    }

    QString set(const QString &name, const QString &property, const QVariant &value)
    {
        const auto object = find(name);
        return object ? object->objectClass()->property(property)->set(object, value)
                      : "not found: " + name;
    }

    QMap<int, QVariantMap> m_actions;
    int m_time = 1000;
};

} // namespace MorvexTest
