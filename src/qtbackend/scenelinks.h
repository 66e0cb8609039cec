#pragma once

#include "qtbackend/item.h"
#include "qtbackend/itempath.h"

#include <QPointer>

namespace Morvex {

// Links in texts of Qt Quick. A text says what is linked at a place of it, but not where its links
// are.

/// What a script names the link by that a click at the place of the window opens; empty when it
/// opens none.
QVariantList sceneLinkAt(QObject *item, const QPoint &windowPlace);

/// A link in a text, by its text.
class SceneLinkItem : public Item
{
public:
    SceneLinkItem(QObject *owner, const ItemSelector &selector);

    /// Whether the item has any.
    static bool isPossible(const QObject *item);

    QString error() const override { return m_error; }
    QString text() const override { return m_text; }
    QVariantMap properties() const override;
    QString whyBlocked() const override;
    void reveal(InputSequence &input) override;
    QWidget *widget() const override { return nullptr; }
    QObject *sceneItem() const override { return m_owner; }
    QRect place() const override;

private:
    QPointer<QObject> m_owner;
    QString m_text;
    QString m_target;
    QString m_error;
};

} // namespace Morvex
