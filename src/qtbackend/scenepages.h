#pragma once

#include <QPointer>
#include <QTimer>
#include <QVariant>

#include <vector>

namespace Morvex {

class ActionReport;

/// Items of Qt Quick that the user turns by dragging or flicking: pages, tumblers, drawers. What
/// came of it is reported, once nothing moves.
class ScenePages
{
public:
    explicit ScenePages(ActionReport &report);

    /// A button is pressed at the place of the window.
    void begin(QObject *root, const QPoint &place);
    /// The wheel is turned there.
    void beginWheel(QObject *root, const QPoint &place);
    /// It is done. @p isMoved is whether it may have moved some; those that were moving before it
    /// may have stopped.
    void end(bool isMoved);

    /// Looks what has become of it. @p isLast is whether something else is done now.
    void settle(bool isLast);

private:
    struct Watched
    {
        QPointer<QObject> object;
        const char *property = nullptr;
        QVariant value;
    };

    void cancel();
    void watchAround(QObject *item);
    void watch(QObject *object, const char *property);
    bool isMoving() const;
    void report(QObject *object, const char *property, const QVariant &value);
    void reportEntry(QObject *box, int row);
    void reportDrawers();

    ActionReport &m_report;
    std::vector<Watched> m_watched;
    QPointer<QObject> m_root;
    // Those that were open.
    std::vector<QPointer<QObject>> m_drawers;
    int m_numberBefore = 0;
    // The combo box that the wheel has changed last.
    QPointer<QObject> m_turnedBox;
    int m_boxNumber = 0;
    bool m_wasMoving = false;
    bool m_isDone = false;
    QTimer m_timer;
};

} // namespace Morvex
