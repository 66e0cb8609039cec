#pragma once

#include <QObjectList>
#include <QPointer>

#include <vector>

namespace Morvex {

class ActionReport;

/// Menus of Qt Quick that the pointer has opened by being over what opens them, which is no action
/// by itself.
class SceneMenus
{
public:
    explicit SceneMenus(ActionReport &report)
        : m_report(report)
    {
    }

    /// Something was done in the window with these items, by which menus may open.
    void noteAction(QObject *root);
    /// The application has handled it.
    void settle();

    /// Reports what opens the menus in which the entry is, as far as no action has opened them.
    void reportOpeners(QObject *entry);
    /// The item has been clicked.
    void noteClick(const QObject *item, int number);

private:
    QObjectList missingOpeners(const QObject *entry) const;
    void report(const QObject *opener);

    ActionReport &m_report;
    QPointer<QObject> m_root;
    std::vector<QPointer<QObject>> m_known;
    // The last click on a title in a menu bar.
    int m_titleClick = 0;
    bool m_isToBeSeen = false;
};

} // namespace Morvex
