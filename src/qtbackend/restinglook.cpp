// The private headers of the toolkit need what these switch off.
#undef QT_NO_CAST_FROM_ASCII
#undef QT_NO_KEYWORDS

#include "qtbackend/restinglook.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QVariant>

#include <private/qapplication_p.h>
#include <private/qlineedit_p.h>

namespace Morvex {
namespace {

const char cursorWidth[] = "cursorWidth";

QList<QWidget *> partsOf(QWidget *widget)
{
    return widget->findChildren<QWidget *>() << widget;
}

} // namespace

HiddenMouse::HiddenMouse(QWidget *widget)
{
    for (QWidget *each : partsOf(widget)) {
        if (!each->underMouse())
            continue;
        each->setAttribute(Qt::WA_UnderMouse, false);
        m_underMouse.emplace_back(each);
    }
}

HiddenMouse::~HiddenMouse()
{
    for (const QPointer<QWidget> &widget : m_underMouse) {
        if (widget)
            widget->setAttribute(Qt::WA_UnderMouse);
    }
}

RestingLook::RestingLook(QWidget *widget)
    : m_mouse(widget)
{
    for (QWidget *each : partsOf(widget))
        hideCursor(each);
    hideFocus(widget->window());
}

RestingLook::~RestingLook()
{
    QApplicationPrivate::active_window = m_activeWindow;
    // Unless it was given to another one meanwhile.
    if (!QApplicationPrivate::focus_widget)
        QApplicationPrivate::focus_widget = m_focusWidget;
    for (const QPointer<QLineEdit> &lineEdit : m_lineEdits) {
        if (lineEdit)
            QLineEditPrivate::get(lineEdit)->cursorVisible = true;
    }
    if (m_textEdit)
        m_textEdit->setProperty(cursorWidth, m_cursorWidth);
}

// Through the setters of the toolkit widgets would learn of it, and finish what they are at.
void RestingLook::hideFocus(QWidget *window)
{
    m_activeWindow = QApplicationPrivate::active_window;
    m_focusWidget = QApplicationPrivate::focus_widget;
    QApplicationPrivate::active_window = window;
    QApplicationPrivate::focus_widget = nullptr;
}

// Fields keep on their own whether they show it: that of a spin box does while the box has the
// focus.
void RestingLook::hideCursor(QWidget *widget)
{
    auto *lineEdit = qobject_cast<QLineEdit *>(widget);
    if (lineEdit && QLineEditPrivate::get(lineEdit)->cursorVisible) {
        QLineEditPrivate::get(lineEdit)->cursorVisible = false;
        m_lineEdits.emplace_back(lineEdit);
    } else if (widget->hasFocus() &&
               (qobject_cast<QTextEdit *>(widget) || qobject_cast<QPlainTextEdit *>(widget))) {
        m_textEdit = widget;
        m_cursorWidth = widget->property(cursorWidth).toInt();
        widget->setProperty(cursorWidth, 0);
    }
}

} // namespace Morvex
