#pragma once

#include <QModelIndex>
#include <QPoint>
#include <QPointer>
#include <QVariant>
#include <QWidget>

#include <optional>

class QComboBox;
class QDateTimeEdit;

namespace Morvex {

/// What a mouse button that is pressed at a place of a widget is about, in words of scripts.
struct RecordedTarget
{
    enum Kind {
        /// Nothing that a script would repeat: a background, a scroll bar, the title of a menu.
        Nothing,
        Click,
        /// It moves the cursor of a text.
        Cursor,
        /// It pastes what is selected into a text.
        Paste,
        /// It changes the value of a slider or a spin box.
        Value,
        Expand,
        Collapse,
    };

    Kind kind = Nothing;
    QPointer<QObject> object;
    /// As a script names it; empty for the object itself.
    QVariantList item;
    /// Only where what happens depends on it; in the object or the item.
    std::optional<QPoint> place;
    /// Nothing unless the mouse is moved before the button is released.
    bool isForDrag = false;
};

RecordedTarget recordedTarget(QWidget *widget, const QPoint &place, Qt::MouseButton button);

/// The item of a view that was pressed; @p pressed, in which the place was, may be null.
QModelIndex indexAt(const RecordedTarget &target, const QWidget *pressed, const QPoint &global);

/// Whether the object is a view that has no item where a click on it goes.
bool isMiddleFree(const QObject *object);

/// The combo box whose list the widget is in; null when it is in none.
QComboBox *comboBoxOfList(const QWidget *widget);

/// The field that has opened the calendar that the widget is in; null when it is in none.
QDateTimeEdit *dateOfCalendar(const QWidget *widget);

/// What the user sees as one with the widget, such as the spin box of a text field.
QWidget *ownerOf(QWidget *widget);

} // namespace Morvex
