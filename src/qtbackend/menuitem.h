#pragma once

#include "qtbackend/item.h"
#include "qtbackend/itempath.h"

#include <QAction>
#include <QPointer>

#include <vector>

namespace Morvex {

/// An entry of a menu, of a menu bar or of the menu of a button, by the path through the menus, or
/// a button of a tool bar.
class MenuItem : public Item, public std::enable_shared_from_this<MenuItem>
{
public:
    MenuItem(QWidget *owner, const ItemSelector &selector);

    QString error() const override { return m_error; }
    QString text() const override;
    QVariantMap properties() const override;
    QString whyBlocked() const override;
    /// Opens one menu after the other with the mouse.
    void reveal(InputSequence &input) override;
    void conceal() override;
    QWidget *widget() const override { return m_places.back(); }
    QRect place() const override;

    QAction *action() const { return m_path.back(); }
    /// Whether a user can open the menus, one after the other, until the entry is seen.
    bool canBeSeen() const;

private:
    void find();
    QString open(std::size_t level);

    QPointer<QWidget> m_owner;
    ItemSelector m_selector;
    // One for each level.
    std::vector<QPointer<QAction>> m_path;
    std::vector<QPointer<QWidget>> m_places;
    QString m_error;
};

} // namespace Morvex
