#pragma once

#include "qtbackend/plainmenu.h"

#include <QMenu>
#include <QPointer>

#include <functional>
#include <memory>

class QWindow;

namespace Morvex {

class ActionReport;

/// The menu by which a user who records adds a verification point of the object under the mouse.
/// It is none of the application, and nothing of its use is recorded.
class PointMenu
{
public:
    explicit PointMenu(ActionReport &report)
        : m_report(report)
    {
    }
    ~PointMenu();

    PointMenu(const PointMenu &) = delete;
    PointMenu &operator=(const PointMenu &) = delete;

    /// Whether it is these keys that open it: Ctrl+Alt+Shift+V.
    static bool isOpenedBy(const QKeyEvent &event);

    /// For what is under the mouse.
    void open();
    bool isOpen() const;
    /// Whether the receiver of an event is a part of it.
    bool owns(const QObject *receiver) const;

private:
    void openFor(QObject *object, const QPoint &place);
    void add(const QString &text, QLatin1String type, const QString &name,
             const QStringList &properties);

    ActionReport &m_report;
    QPointer<QMenu> m_menu;
    // In its place where there can be no widgets.
    std::unique_ptr<PlainMenu> m_plainMenu;
};

} // namespace Morvex
