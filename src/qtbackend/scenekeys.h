#pragma once

#include "qtbackend/keyreport.h"

class QInputMethodEvent;
class QKeyEvent;
class QShortcutEvent;

namespace Morvex {

class SceneMenus;

/// What the user types into items of Qt Quick, from the events before they are delivered.
class SceneKeys
{
public:
    SceneKeys(ActionReport &report, SceneMenus &menus)
        : m_report(report)
        , m_menus(menus)
        , m_typed(report)
    {
    }

    // The root has all items of the window or widget that gets the keys.

    /// A button of the mouse is pressed.
    void beginPress(QObject *root);

    /// A key that is pressed, or is offered before shortcuts are looked at.
    void press(QObject *root, const QKeyEvent &event);
    void release();
    void shortcut(QObject *root, const QShortcutEvent &event);
    void inputMethod(QObject *item, const QInputMethodEvent &event);

    /// Looks what has become of what was done last.
    void settle();

private:
    // What was done while an item had the focus.
    struct Done
    {
        QPointer<QObject> root;
        QPointer<QObject> focus;
        int number = 0;
    };

    // A key that may be the first of a shortcut.
    struct Pressed
    {
        QPointer<QObject> target;
        QString keys;
        // 0 where they were not reported.
        int number = 0;
        // The click on what they push; 0 for none.
        int push = 0;
    };

    // Of an entry of a popup, which closes then.
    struct Choice
    {
        QPointer<QObject> popup;
        int number = 0;
        bool isReleased = false;
    };

    void typeInComboBox(QObject *box, QObject *popup, const QKeyEvent &event);
    void typeInMenu(QObject *root, QObject *menu, const QKeyEvent &event);
    void push(QObject *focus, const QKeyEvent &event);
    void type(QObject *root, QObject *focus, const QKeyEvent &event);
    bool mayShow(QObject *field, const QKeyEvent &event, const QString &keys);
    void selectAllAsShown(QObject *target, QObject *focus);
    void dropLastTab();

    ActionReport &m_report;
    SceneMenus &m_menus;
    KeyReport m_typed;
    Done m_tab;
    // The action before the press, and where the focus was.
    Done m_press;
    // A Tab that has done nothing but to move the focus; 0 for none.
    int m_lastTab = 0;
    // Whether keys have moved the focus, which selects what is in some fields.
    bool m_hasMovedFocus = false;
    Choice m_choice;
    Pressed m_pressed;
    // What may be a part of a secret.
    QString m_heldBack;
};

} // namespace Morvex
