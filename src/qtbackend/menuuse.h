#pragma once

#include <QMenu>
#include <QPointer>

namespace Morvex {

class ActionReport;
struct MenuPath;

/// Menus that hold more than entries, such as a field to search in. A choice from the others says
/// that they were opened; these a script has to open before it uses what is in them.
class MenuUse
{
public:
    explicit MenuUse(ActionReport &report)
        : m_report(report)
    {
    }

    /// Any object may be given.
    void noteShown(const QObject *object);
    /// The widget is going to be used.
    void enter(const QWidget *widget);
    /// The menu that a script has open when the user has this one open; null for none.
    QMenu *openFor(QMenu *menu) const;
    /// The menu is open by an action that is in the script.
    void setOpen(QMenu *menu) { m_entered = menu; }
    /// As a script finds it: that of a menu is the one that it had when it was opened.
    QString nameOf(const QWidget *owner) const;
    /// Reports that the user chooses the entry; returns the number of the action.
    int choose(const MenuPath &path);
    /// The menu, or the screen while it is open, is pressed: elsewhere that closes all menus, and
    /// so may a press in them.
    void press(QMenu *menu, const QPoint &globalPlace);
    /// An entry is chosen, which closes it as well.
    void endPress() { m_pressed = {}; }
    void settlePress();

    /// Looks whether it is still open.
    void settle();

private:
    struct Pressed
    {
        QPointer<QMenu> menu;
        QString name;
    };

    ActionReport &m_report;
    QPointer<QMenu> m_entered;
    Pressed m_pressed;
    // The last one that was opened while no other was open, and what it was called then: where the
    // script finds it none is open beside it.
    QPointer<QMenu> m_shown;
    QString m_shownName;
};

} // namespace Morvex
