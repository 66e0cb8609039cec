#pragma once

#include "qtbackend/areascroll.h"
#include "qtbackend/mouseway.h"
#include "qtbackend/pressoutcome.h"
#include "qtbackend/selectionpaste.h"
#include "qtbackend/textdrag.h"

#include <QMdiSubWindow>

class QMouseEvent;

namespace Morvex {

class ActionReport;
class MenuUse;

/// What the user does with the buttons of the mouse to widgets, from the events before they are
/// delivered.
class MouseActions
{
public:
    MouseActions(ActionReport &report, MenuUse &menus)
        : m_report(report)
        , m_menus(menus)
        , m_textDrag(report)
        , m_paste(report)
    {
    }

    // In a window, before it goes on to a widget.
    void beginPress();
    void beginRelease(const QMouseEvent &event);

    /// That of the press that has not been released yet; 0 when it may be no click.
    int pressNumber() const { return m_press.number; }

    // In a widget, and in those around it as long as they don't take it.
    void press(QWidget *widget, const QMouseEvent &event);
    /// Of the window.
    void move(const QMouseEvent &event);
    void release(QWidget *widget, const QMouseEvent &event);

    /// What is dragged as data.
    void dragMoved();
    void dropAt(const QPoint &globalPlace, bool isMove);
    /// Something else is done, so that it is no longer dragged.
    void endDrag();

    /// A window within another one is being closed.
    void closeSubWindow(QMdiSubWindow *window);

    /// Something else may change the value of this widget.
    void expectChange(QWidget *widget);

    /// An object, of any kind, is being shown.
    void noteShown(const QObject *object) { m_scroll.noteShown(object); }

    /// Looks what has become of what was done last.
    void settle();

private:
    struct Press
    {
        QPointer<QWidget> widget;
        QPoint globalPlace;
        Qt::MouseButton button = Qt::NoButton;
        Qt::KeyboardModifiers modifiers;
        bool isDouble = false;
        bool isDragging = false;
        RecordedTarget target;
        // Of a press that may be a click; else 0.
        int number = 0;
        // How it was reported on a part of a class of the application's own, which may use it and
        // hand it on nevertheless.
        QPointer<QObject> ownObject;
        QString ownWhat;
        QString ownName;
        QVariantMap ownPlace;
        // On the screen.
        MouseWay way;
    };

    // That which a double click begins with.
    struct Click
    {
        QPointer<QObject> object;
        QVariantList item;
        int number = 0;
        // Of a button, when it was pressed.
        bool hadMenu = false;
    };

    struct Choice
    {
        QPointer<QWidget> list;
        int number = 0;
    };

    void settleMenuOfButton();
    bool isHandedOnTo(const QWidget *widget) const;
    void describe(QWidget *widget, const QPoint &place);
    void reportPress();
    void reportScroll();
    bool isSecondClick() const;
    bool isDoubleClicked(const QObject *object) const;
    void giveBackPress();
    QVariantMap placeOf(const RecordedTarget &target) const;
    void finishPress(const QPoint &globalPlace);
    bool isRound(const QPoint &globalPlace) const;
    QString cornersOfWay(const QPoint &globalPlace) const;
    void reportDrag(const QPoint &globalPlace, bool isData);
    void choose(QWidget *menu, const QPoint &place);
    void chooseInList(QWidget *list, const QPoint &place);

    ActionReport &m_report;
    MenuUse &m_menus;
    Press m_press;
    PressOutcome m_outcome;
    TextDrag m_textDrag;
    SelectionPaste m_paste;
    AreaScroll m_scroll;
    // The mouse is used on the frame of it.
    QPointer<QMdiSubWindow> m_subWindow;
    Choice m_choice;
    bool m_isPressNew = false;
    bool m_isReleaseNew = false;
    bool m_isInMenu = false;
    Click m_click;
    Click m_clickBefore;
};

} // namespace Morvex
