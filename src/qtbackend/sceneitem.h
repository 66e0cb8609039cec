#pragma once

#include "qtbackend/item.h"
#include "qtbackend/itempath.h"

#include <QPointer>

namespace Morvex {

/// An entry of a list, a grid, a table or a combo box of Qt Quick.
class SceneItem : public Item
{
public:
    SceneItem(QObject *owner, const ItemSelector &selector);

    /// Whether the object has such items.
    static bool isPossible(QObject *object);

    QString error() const override { return m_error; }
    QString text() const override { return m_text; }
    QVariantMap properties() const override;
    QString whyBlocked() const override;
    /// Opens the list of a combo box, and scrolls.
    void reveal(InputSequence &input) override;
    QWidget *widget() const override { return nullptr; }
    QObject *sceneItem() const override;
    QRect place() const override { return {}; }

private:
    void findInBox(const ItemSelector &selector);
    void findInTable();
    void findInView(const ItemSelector &selector);
    void findNumber(const ItemSelector &selector, int count);

    QPointer<QObject> m_owner;
    ItemSelector m_selector;
    // Of one for which there is no row that could be asked for.
    QPointer<QObject> m_delegate;
    int m_row = -1;
    QString m_text;
    QString m_error;
};

} // namespace Morvex
