#pragma once

#include "qtbackend/item.h"
#include "qtbackend/itempath.h"

#include <QComboBox>
#include <QHeaderView>
#include <QPointer>
#include <QTabBar>

namespace Morvex {

class ComboBoxItem : public Item
{
public:
    ComboBoxItem(QComboBox *box, const ItemSelector &selector);

    QString error() const override { return m_error; }
    QString text() const override { return m_box->itemText(m_row); }
    QVariantMap properties() const override;
    QString whyBlocked() const override;
    /// Opens the list.
    void reveal(InputSequence &input) override;
    void conceal() override;
    QWidget *widget() const override { return m_box ? m_box->view()->viewport() : nullptr; }
    QRect place() const override;

private:
    QModelIndex index() const;

    QPointer<QComboBox> m_box;
    int m_row = -1;
    QString m_error;
};

class TabItem : public Item
{
public:
    TabItem(QTabBar *bar, const ItemSelector &selector);

    QString error() const override { return m_error; }
    QString text() const override { return shownText(m_bar->tabText(m_index)); }
    QVariantMap properties() const override;
    void reveal(InputSequence &input) override;
    QWidget *widget() const override { return m_bar; }
    QRect place() const override;
    bool isInBar() const override { return true; }

private:
    QPointer<QTabBar> m_bar;
    int m_index = -1;
    QString m_error;
};

/// A section of a header, by its text, or by its number as the row of a vertical one or the column
/// of a horizontal one.
class HeaderItem : public Item
{
public:
    HeaderItem(QHeaderView *header, const ItemSelector &selector);

    QString error() const override { return m_error; }
    QString text() const override;
    QVariantMap properties() const override;
    void reveal(InputSequence &input) override;
    QWidget *widget() const override { return m_header ? m_header->viewport() : nullptr; }
    QRect place() const override;
    bool isInBar() const override { return true; }

private:
    QPointer<QHeaderView> m_header;
    int m_section = -1;
    QString m_error;
};

/// A link in a label or a text browser, by its text.
class LinkItem : public Item
{
public:
    LinkItem(QWidget *owner, const ItemSelector &selector);

    QString error() const override { return m_error; }
    QString text() const override;
    QVariantMap properties() const override { return {}; }
    void reveal(InputSequence &input) override;
    QWidget *widget() const override;
    QRect place() const override;

private:
    QPointer<QWidget> m_owner;
    int m_index = -1;
    QString m_error;
};

/// A part that a widget of another kind shows to readers of screens.
class AccessibleItem : public Item
{
public:
    AccessibleItem(QWidget *owner, const ItemSelector &selector);

    QString error() const override { return m_error; }
    QString text() const override;
    QVariantMap properties() const override;
    void reveal(InputSequence &) override {}
    QWidget *widget() const override { return m_owner; }
    QRect place() const override;

private:
    QPointer<QWidget> m_owner;
    QList<int> m_path;
    QString m_error;
};

} // namespace Morvex
