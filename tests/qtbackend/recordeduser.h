#pragma once

#include "qtbackend/qtinspector.h"
#include "runner/javascripteventrecorder.h"
#include "runner/recordedactions.h"

#include <QtTest>
#include <QtWidgets>

#include <gtest/gtest.h>

#include <functional>

namespace MorvexTest {

/// A window that a user uses by the way of its events, then a second one of the same kind on which
/// the same is done by the script.
class RecordedUser : public testing::Test
{
protected:
    using Maker = std::function<void(QWidget *)>;

    /// Makes the window and records what is done in it from now on.
    void record(const Maker &maker)
    {
        m_maker = maker;
        replayed = nullptr;
        actions.clear();
        window = makeWindow(maker);
        inspector = std::make_unique<Morvex::QtInspector>();
        inspector->record([this](const QVariantMap &action) { actions += action; });
    }

    /// Words that are typed, and keys that have an upper case name, such as "Tab" or "Ctrl+A".
    void press(const QString &words)
    {
        for (const QString &word : words.split(' ', Qt::SkipEmptyParts)) {
            const int key = QKeySequence(word)[0];
            if (word.size() > 1 && word[0].isUpper())
                QTest::keyClick(QApplication::focusWindow(),
                                Qt::Key(key & ~Qt::KeyboardModifierMask),
                                Qt::KeyboardModifiers(key & Qt::KeyboardModifierMask));
            else
                for (const QChar character : word)
                    QTest::keyClick(QApplication::focusWindow(), character.toLatin1());
            QCoreApplication::processEvents();
        }
    }

    void click(QWidget *widget) { click(widget, widget->rect().center()); }
    void click(QWidget *widget, const QPoint &place)
    {
        QTest::mouseClick(widget->window()->windowHandle(), Qt::LeftButton, {},
                          widget->mapTo(widget->window(), place));
        QCoreApplication::processEvents();
    }

    template <typename Widget>
    Widget *child(const char *name)
    {
        return window->findChild<Widget *>(name);
    }

    /// The script of it, without the names of objects around those that are used.
    QString script()
    {
        inspector = nullptr;
        Morvex::JavaScriptEventRecorder recorder(true, false, nullptr);
        for (const Morvex::EventData &event : Morvex::eventsOfActions(actions, false))
            recorder.queueEvent(event);
        recorder.dequeueEvents();
        static const QRegularExpression name("find\\(\".*?name='(\\w+)'.*?\"\\)");
        return recorder.lines().join('\n').replace(name, "\\1");
    }

    /// Does the same in the other window, with that password.
    void replay(const QString &password = {})
    {
        inspector = nullptr;
        window = nullptr;
        replayed = makeWindow(m_maker);
        for (const Morvex::EventData &event : Morvex::eventsOfActions(actions, false))
            EXPECT_EQ(use(event, password), QString()) << event.methodName().toStdString();
        QCoreApplication::processEvents();
    }

    std::unique_ptr<QWidget> window;
    std::unique_ptr<QWidget> replayed;
    QVariantList actions;

private:
    static std::unique_ptr<QWidget> makeWindow(const Maker &maker)
    {
        auto made = std::make_unique<QWidget>();
        made->setObjectName("window");
        made->setLayout(new QVBoxLayout);
        maker(made.get());
        made->show();
        made->activateWindow();
        QCoreApplication::processEvents();
        return made;
    }

    static QString use(const Morvex::EventData &event, const QString &password)
    {
        QVariantList arguments;
        for (int i = 0; i < event.arguments().count(); ++i)
            arguments += event.arguments().at(i).value;
        const QString method = event.methodName();
        QString error;
        Morvex::QtInspector player;
        const auto object = player.findObject(event.objectName(), &error);
        if (!object)
            return error;
        const QVariantList id{object->id()};
        if (method == "type" || method == "typePassword")
            player.callFunction(
                "typeText",
                id + (method == "type" ? arguments : QVariantList{"<Ctrl+A>" + password}), &error);
        else if (method == "click")
            player.callFunction("useMouse", id + QVariantList{"click", QVariantMap()}, &error);
        else if (method == "editItem")
            player.callFunction(
                "useItem",
                id + QVariantList{"edit", arguments.mid(0, arguments.size() - 1), arguments.last()},
                &error);
        else
            error = "unknown";
        return error;
    }

    Maker m_maker;
    std::unique_ptr<Morvex::QtInspector> inspector;
};

} // namespace MorvexTest
