#pragma once

#include "support/backend.h"

#include <QtWidgets>

#include <gtest/gtest.h>

namespace MorvexTest {

/// A window whose parts are used through an inspector, of each backend in turn.
class InspectorTest : public testing::Test
{
protected:
    InspectorTest()
    {
        window.setObjectName("window");
        window.resize(800, 600);
    }

    /// A widget at a place of the test's own.
    template <typename Widget>
    Widget *add(const char *name, const QRect &place, QWidget *parent = nullptr)
    {
        auto *widget = new Widget(parent ? parent : &window);
        widget->setObjectName(name);
        widget->setGeometry(place);
        return widget;
    }

    /// Adds @p widget below the others in the layout of @p parent, or of the window.
    template <typename Widget>
    Widget *add(Widget *widget, const char *name, QWidget *parent = nullptr)
    {
        QWidget *box = parent ? parent : &window;
        if (!box->layout())
            new QVBoxLayout(box);
        widget->setObjectName(name);
        box->layout()->addWidget(widget);
        return widget;
    }

    Morvex::SharedPtr<Morvex::Object> find(const QString &name)
    {
        return inspector.findObject(name, nullptr);
    }

    /// The error text. What was answered is in `lastAnswer`.
    QString call(const char *function, const char *object, const QVariantList &arguments = {})
    {
        QString error;
        const auto found = inspector.findObject(object, &error);
        if (!found)
            return error;
        lastAnswer =
            inspector.callFunction(function, QVariantList{found->id()} + arguments, &error);
        return error;
    }
    QString click(const char *object, const QVariantList &place = {})
    {
        return call("clickObject", object, place);
    }
    QString type(const char *object, const char *keys)
    {
        return call("typeText", object, {QString(keys)});
    }

    QWidget window;
    QVariant lastAnswer;
    Backend backend;
    Morvex::Inspector &inspector = backend.inspector();
};

} // namespace MorvexTest
