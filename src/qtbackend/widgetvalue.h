#pragma once

#include <QVariant>

class QWidget;

namespace Morvex {

/// Whether it is an input by a handle, and not a bar that scrolls what is beside it.
bool isSlider(const QObject *object);

/// The property that the mouse changes in a widget by small steps. Empty for a spin box of a kind
/// of its own, of which only the text is known, and for other widgets.
const char *valuePropertyOf(const QWidget *widget);

/// What the mouse changes in a widget by small steps: the value of a slider or a spin box, the date
/// of a field, the entry of a combo box, the current tab. Not valid for any other widget.
QVariant valueOf(const QWidget *widget);

/// How a script brings a widget that has a value to the one that it has now.
struct ValueSetting
{
    static ValueSetting of(QWidget *widget);

    /// As docs/application-protocol.md has it.
    QString what;
    QVariantMap more;
    /// Which may be what the widget is a part of.
    QWidget *object = nullptr;
};

} // namespace Morvex
