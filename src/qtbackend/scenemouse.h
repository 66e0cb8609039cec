#pragma once

#include "qtbackend/mouseway.h"
#include "qtbackend/recordedtarget.h"
#include "qtbackend/scenevalue.h"
#include "qtbackend/textcursorstate.h"

#include <vector>

class QMouseEvent;

namespace Morvex {

class ActionReport;
class SceneMenus;

/// What the user does with the buttons of the mouse to items of Qt Quick, from the events of their
/// window, or of the widget that has them, before they are delivered.
class SceneMouse
{
public:
    SceneMouse(ActionReport &report, SceneMenus &menus)
        : m_report(report)
        , m_menus(menus)
    {
    }

    /// @p root has all items.
    void press(QObject *root, const QMouseEvent &event);
    void release(const QMouseEvent &event);
    /// Of any window.
    void move(const QMouseEvent &event);
    /// Whether the mouse has moved from where it was pressed to the place.
    bool isFar(const QPoint &place) const;

    /// What was pressed is dragged as data, to the place when it is dropped.
    void dragData();
    void dropData(QObject *root, const QPoint &place);

    /// That of a press that was an action; null after any other.
    QObject *rootOfAction() const { return m_press.number > 0 ? m_press.root.data() : nullptr; }

    /// Looks what has become of what was done last.
    void settle();

private:
    struct Press
    {
        QPointer<QObject> root;
        // What gets the press; null when it is not known to be taken.
        QPointer<QObject> taker;
        QPoint place;
        // On the screen.
        QPoint globalPlace;
        MouseWay way;
        Qt::MouseButton button = Qt::NoButton;
        Qt::KeyboardModifiers modifiers;
        ulong time = 0;
        bool isDown = false;
        bool isDouble = false;
        // What has grabbed the mouse.
        QPointer<QObject> grabber;
        // What a handler may drag, by the place where it is pressed.
        RecordedTarget dragged;
        QString draggedName;
        RecordedTarget target;
        // As it was then, since what is dragged moves.
        QPoint placeInTarget;
        // Those that were open, and all that were shown.
        std::vector<QPointer<QObject>> popups;
        int popupCount = 0;
        // Of a press that may be a click; else 0.
        int number = 0;
    };

    // What shows only once the release has been delivered.
    struct Outcome
    {
        RecordedTarget::Kind kind = RecordedTarget::Nothing;
        QPointer<QObject> item;
        QString name;
        TextCursorState cursor;
        std::vector<SceneValue> values;
        bool isReleased = false;
    };

    void begin(QObject *root, const QMouseEvent &event);
    void describe(QObject *taker);
    void describeDragged();
    void reportPress();
    bool isOffLink(const QPoint &place) const;
    void cancelPress();
    void reportHover();
    void finishPress(const QMouseEvent &event);
    bool isRound(const QPoint &globalPlace) const;
    bool takesDrag() const;
    void reportHeld(ulong milliseconds);
    void reportDrag(const QPoint &place);
    QString cornersOfWay(const QPoint &place) const;
    QVariantMap endOfDrag(const RecordedTarget &start, const QString &name, const QPoint &place);
    bool isTaken() const;
    bool isStop(const QObject *grabber) const;
    void checkTaker();
    void settleOutcome();
    void settlePopups();

    ActionReport &m_report;
    SceneMenus &m_menus;
    Press m_press;
    Outcome m_outcome;
    bool m_isToBeTaken = false;
    // The click that a double click begins with.
    int m_lastClick = 0;
};

} // namespace Morvex
