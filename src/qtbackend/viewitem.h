#pragma once

#include "qtbackend/item.h"
#include "qtbackend/itempath.h"

#include <QAbstractItemView>
#include <QPersistentModelIndex>
#include <QPointer>

class QTreeView;

namespace Morvex {

/// A cell of a table, an entry of a list, a node of a tree.
class ViewItem : public Item
{
public:
    ViewItem(QAbstractItemView *view, const ItemSelector &selector);

    QString error() const override { return m_error; }
    QString text() const override { return m_index.data().toString(); }
    QVariantMap properties() const override;
    void reveal(InputSequence &input) override;
    QWidget *widget() const override { return m_view ? m_view->viewport() : nullptr; }
    QRect place() const override;
    [[nodiscard]] QString use(const QString &action, const QVariant &value,
                              InputSequence &input) override;

private:
    void findCell(const ItemSelector &selector);
    void findCellWithText(const ItemSelector &selector);
    void findNode(const ItemSelector &selector);
    QModelIndex node() const { return m_index.sibling(m_index.row(), 0); }
    [[nodiscard]] QString expand(const QString &action, InputSequence &input);
    [[nodiscard]] QString check(bool checked, InputSequence &input);
    [[nodiscard]] QString edit(const QString &text, InputSequence &input);

    QPointer<QAbstractItemView> m_view;
    QPersistentModelIndex m_index;
    QString m_error;
};

} // namespace Morvex
