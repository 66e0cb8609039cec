#pragma once

#include <QPointer>
#include <QWidget>

namespace Morvex {

class ActionReport;

/// What does nothing but move the focus to another widget. It is reported, as the widget that is
/// left takes over what was typed then, and taken back when what is done next moves the focus
/// likewise.
class FocusMove
{
public:
    explicit FocusMove(ActionReport &report)
        : m_report(report)
    {
    }

    /// The action was reported and is delivered now; it may only move the focus.
    void expect(int number);
    /// Keys for the widget are going to be reported, or something that gives it the focus, too.
    /// Returns whether the move before was taken back for that.
    bool enter(const QWidget *target);
    /// Whether the user has moved the focus, which selects what is in some fields. Once for each
    /// move.
    bool takeNew();

    // Of a button of the mouse, before it is delivered.
    void beginPress();
    void endPress();

    /// Looks where the focus is after all that was delivered.
    void settle();

private:
    struct Move
    {
        // 0 for none.
        int number = 0;
        QPointer<QWidget> from;
        // Where the first of several moves in a row began.
        QPointer<QWidget> origin;
    };

    struct Press
    {
        bool isExpected = false;
        bool isReleased = false;
        int numberBefore = 0;
        QPointer<QWidget> from;
        // Null when it has not moved the focus.
        QPointer<QWidget> to;
    };

    void lookAfterPress();
    void reportPress();

    ActionReport &m_report;
    Move m_expected;
    Move m_last;
    // The next action, when it may go on with the last move.
    Move m_further;
    Press m_press;
    bool m_isNew = false;
};

} // namespace Morvex
