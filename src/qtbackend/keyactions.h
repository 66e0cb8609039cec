#pragma once

#include "qtbackend/celledits.h"
#include "qtbackend/keyreport.h"
#include "qtbackend/secrettyping.h"
#include "qtbackend/textcursorstate.h"
#include "qtbackend/typedsearch.h"

#include <QPointer>
#include <QWidget>

class QInputMethodEvent;
class QKeyEvent;
class QKeySequence;
class QLineEdit;
class QMenu;
class QShortcutEvent;
class QTabBar;
class QWindow;

namespace Morvex {

class ActionReport;
class FocusMove;
class MenuUse;

/// What the user types, from the events before they are delivered.
class KeyActions
{
public:
    KeyActions(ActionReport &report, FocusMove &focus, MenuUse &menus)
        : m_report(report)
        , m_focus(focus)
        , m_menus(menus)
        , m_edits(report)
        , m_secrets(report)
        , m_search(report)
        , m_typed(report)
    {
    }

    /// Whether the key was offered before.
    bool isKnown(const QKeyEvent &event);
    /// A key that is pressed in a window, or is offered to it before shortcuts are looked at.
    void press(const QKeyEvent &event);
    /// The key for the context menu, of which that is opened before the key is pressed.
    void menuKey();
    /// What the key that was pressed last has come to.
    void shortcut(QObject *owner, const QShortcutEvent &event);
    /// The focus has left the widget, which has not seen that yet.
    void focusOut(const QObject *widget) { m_edits.focusOut(widget); }
    /// Something is going to be done by actions after that of this number.
    void beginAction(int numberBefore) { m_edits.beginAction(numberBefore); }
    void inputMethod(QObject *receiver, const QInputMethodEvent &event);

    /// Looks what has become of what was done last.
    void settle();

private:
    // A key that a field may refuse.
    struct Offer
    {
        QPointer<const QLineEdit> field;
        QString text;
        TextCursorState cursor;
        int number = 0;
    };

    struct Choice
    {
        QPointer<QWidget> list;
        int number = 0;
    };

    bool isForList(QWidget *popup, const QKeyEvent &event);
    void pressInMenu(QMenu *menu, const QKeyEvent &event);
    void type(QWidget *target, const QKeyEvent &event);
    void selectAsShown(QWidget *target, bool isReplacing);
    void typeKeys(QWidget *target, const QString &keys, bool isReplacing);
    void reportShortcut(const QKeySequence &key, bool isHeldBack);
    void replaceByClick(const QObject *object, const QVariantMap &more);
    void replaceByTab(QTabBar *tabs, const QKeySequence &key);

    ActionReport &m_report;
    FocusMove &m_focus;
    MenuUse &m_menus;
    CellEdits m_edits;
    SecretTyping m_secrets;
    TypedSearch m_search;
    // That which was offered first.
    ulong m_offeredTime = 0;
    int m_offeredKey = 0;
    int m_lastKey = 0;
    bool m_isMenuKeyKnown = false;
    // What a shortcut may take before it gets there.
    QPointer<QWidget> m_pressedIn;
    QString m_pressedKeys;
    // Whether it takes the place of the key that has moved the focus there.
    bool m_hasTakenMove = false;
    KeyReport m_typed;
    Offer m_offer;
    Choice m_choice;
};

} // namespace Morvex
