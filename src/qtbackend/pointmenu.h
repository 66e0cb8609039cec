#pragma once

#include "qtbackend/plainmenu.h"

#include <QMenu>
#include <QPoint>
#include <QPointer>
#include <QTimer>

#include <functional>
#include <memory>

class QKeyEvent;
class QWindow;

namespace Morvex {

class ActionReport;

/// The menu by which a user who records adds a verification point of the object under the mouse.
/// It is none of the application, and nothing of its use is recorded.
class PointMenu
{
public:
    explicit PointMenu(ActionReport &report);
    ~PointMenu();

    PointMenu(const PointMenu &) = delete;
    PointMenu &operator=(const PointMenu &) = delete;

    /// Whether it is these keys that open it: Ctrl+Alt+Shift+V.
    static bool isOpenedBy(const QKeyEvent &event);

    /// The keys for it are pressed. It opens for what is under the mouse once they are released, as
    /// applications may show something else as long as they are held.
    void expect();
    /// A key is released, which the application has not seen yet.
    void release(const QKeyEvent &event);
    bool isOpen() const;
    /// Whether the receiver of an event is a part of it.
    bool owns(const QObject *receiver) const;

private:
    void open();
    void openFor(QObject *object, const QPoint &place);
    void add(const QString &text, QLatin1String type, const QString &name,
             const QStringList &properties);

    ActionReport &m_report;
    QTimer m_opening;
    QPoint m_place;
    QPointer<QMenu> m_menu;
    // In its place where there can be no widgets.
    std::unique_ptr<PlainMenu> m_plainMenu;
};

} // namespace Morvex
