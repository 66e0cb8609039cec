#pragma once

#include "qtbackend/keyreport.h"

#include <QPointer>
#include <QWidget>

class QInputMethodEvent;
class QKeyEvent;
class QShortcutEvent;
class QWindow;

namespace Morvex {

class ActionReport;

/// What the user types, from the events before they are delivered.
class KeyActions
{
public:
    explicit KeyActions(ActionReport &report)
        : m_report(report)
        , m_typed(report)
    {
    }

    /// Whether the key was offered before.
    bool isKnown(const QKeyEvent &event);
    /// A key that is pressed in a window, or is offered to it before shortcuts are looked at.
    void press(const QKeyEvent &event);
    /// What the key that was pressed last has come to.
    void shortcut(QObject *owner, const QShortcutEvent &event);
    /// The mouse is pressed on this widget.
    void leaveEditor(const QWidget *pressed);
    void inputMethod(QObject *receiver, const QInputMethodEvent &event);

    /// Looks what has become of what was done last.
    void settle();

private:
    struct Tab
    {
        QPointer<QWidget> focus;
        int number = 0;
    };

    struct Choice
    {
        QPointer<QWidget> list;
        int number = 0;
    };

    bool isForList(QWidget *popup, const QKeyEvent &event);
    void commitEdit();
    void type(QWidget *target, const QKeyEvent &event);

    ActionReport &m_report;
    // That which was offered first.
    ulong m_offeredTime = 0;
    int m_offeredKey = 0;
    int m_lastKey = 0;
    KeyReport m_typed;
    Tab m_tab;
    // Whether keys have moved the focus, which selects what is in a field.
    bool m_hasMovedFocus = false;
    // Of an item, into which was typed.
    QPointer<QWidget> m_editor;
    Choice m_choice;
};

} // namespace Morvex
