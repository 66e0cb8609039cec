#include "qtbackend/items.h"

#include "qtbackend/turneventloop.h"
#include "qtbackend/userinput.h"
#include "qtbackend/whyblocked.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QTabBar>
#include <QTabWidget>
#include <QTreeView>

#include <memory>
#include <optional>
#include <vector>

namespace Morvex {
namespace {

const QLatin1Char pathSeparator('/');

// One level of a path: which of the texts it goes on with, and what is left of it then. Of several
// the longest, as an entry may have the separator in its text.
struct Step
{
    int index = -1;
    QString rest;
};

Step nextStep(const QStringList &texts, const QString &path)
{
    Step best;
    int longest = -1;
    for (int i = 0; i < texts.size(); ++i) {
        const QString &text = texts.at(i);
        const bool isWhole = text == path;
        if (text.size() <= longest || !(isWhole || path.startsWith(text + pathSeparator)))
            continue;
        longest = text.size();
        best = {i, isWhole ? QString() : path.mid(text.size() + 1)};
    }
    return best;
}

// As it is shown: "&" marks a letter, "&&" is one.
QString shownText(QString text)
{
    const int tab = text.indexOf(QLatin1Char('\t'));
    if (tab >= 0)
        text.truncate(tab);
    QString shown;
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) == QLatin1Char('&') && i + 1 < text.size())
            ++i;
        shown += text.at(i);
    }
    return shown;
}

// A widget that has items.
class ItemOwner
{
public:
    virtual ~ItemOwner() = default;

    virtual bool contains() const = 0;
    virtual QString text() const = 0;
    [[nodiscard]] virtual QString use(const QString &action) = 0;
};

QString unknownAction(const QString &action)
{
    return QStringLiteral("an item of this widget has no '%1'").arg(action);
}

class ViewItem : public ItemOwner
{
public:
    ViewItem(QAbstractItemView *view, const QVariantList &selector)
        : m_view(view)
        , m_index(selector.size() == 2 ? cell(selector) : node(selector.value(0).toString()))
    {
    }

    bool contains() const override { return m_index.isValid(); }
    QString text() const override { return m_index.data().toString(); }

    [[nodiscard]] QString use(const QString &action) override
    {
        if (auto *tree = qobject_cast<QTreeView *>(m_view.data())) {
            if (action == QLatin1String("expand"))
                return setExpanded(tree, true);
            if (action == QLatin1String("collapse"))
                return setExpanded(tree, false);
            if (action == QLatin1String("toggle"))
                return setExpanded(tree, !tree->isExpanded(m_index.sibling(m_index.row(), 0)));
        }
        if (action == QLatin1String("click"))
            return click(ClickKind::Single);
        if (action == QLatin1String("doubleClick"))
            return click(ClickKind::Double);
        if (action != QLatin1String("activate"))
            return unknownAction(action);
        const QString error = click(ClickKind::Single);
        return error.isEmpty() && m_view ? typeText(m_view, QStringLiteral("<Return>")) : error;
    }

private:
    QModelIndex cell(const QVariantList &selector) const
    {
        const QAbstractItemModel *model = m_view->model();
        return model ? model->index(selector.at(0).toInt(), selector.at(1).toInt(),
                                    m_view->rootIndex())
                     : QModelIndex();
    }

    // Nodes of trees by their first column; in a table any cell with this text.
    QModelIndex node(QString path) const
    {
        const QAbstractItemModel *model = m_view->model();
        if (!model || path.isEmpty())
            return {};
        if (!qobject_cast<QTreeView *>(m_view.data()))
            return cellWithText(*model, path);
        QModelIndex index = m_view->rootIndex();
        while (!path.isEmpty()) {
            const Step step = nextStep(childTexts(*model, index), path);
            if (step.index < 0)
                return {};
            index = model->index(step.index, 0, index);
            path = step.rest;
        }
        return index;
    }

    QModelIndex cellWithText(const QAbstractItemModel &model, const QString &text) const
    {
        const QModelIndex root = m_view->rootIndex();
        for (int row = 0; row < model.rowCount(root); ++row) {
            for (int column = 0; column < model.columnCount(root); ++column) {
                const QModelIndex index = model.index(row, column, root);
                if (index.data().toString() == text)
                    return index;
            }
        }
        return {};
    }

    static QStringList childTexts(const QAbstractItemModel &model, const QModelIndex &parent)
    {
        QStringList texts;
        for (int row = 0; row < model.rowCount(parent); ++row)
            texts += model.index(row, 0, parent).data().toString();
        return texts;
    }

    [[nodiscard]] QString setExpanded(QTreeView *tree, bool expanded)
    {
        const QString error = whyBlocked(tree);
        if (error.isEmpty()) {
            tree->scrollTo(m_index);
            tree->setExpanded(m_index.sibling(m_index.row(), 0), expanded);
            turnEventLoop(0);
        }
        return error;
    }

    [[nodiscard]] QString click(ClickKind kind)
    {
        m_view->scrollTo(m_index);
        const QRect place = m_view->visualRect(m_index).intersected(m_view->viewport()->rect());
        if (place.isEmpty())
            return QStringLiteral("the item is hidden");
        return clickObject(m_view, place.center(), kind);
    }

    QPointer<QAbstractItemView> m_view;
    QPersistentModelIndex m_index;
};

class ComboBoxItem : public ItemOwner
{
public:
    ComboBoxItem(QComboBox *box, const QVariantList &selector)
        : m_box(box)
        , m_row(selector.size() == 2 ? selector.at(0).toInt()
                                     : box->findText(selector.value(0).toString(),
                                                     Qt::MatchExactly | Qt::MatchCaseSensitive))
    {
    }

    bool contains() const override { return m_row >= 0 && m_row < m_box->count(); }
    QString text() const override { return m_box->itemText(m_row); }

    [[nodiscard]] QString use(const QString &action) override
    {
        if (action != QLatin1String("click"))
            return unknownAction(action);
        const QString error = whyBlocked(m_box);
        if (!error.isEmpty())
            return error;
        m_box->showPopup();
        turnEventLoop(0);
        const QModelIndex index =
            m_box->model()->index(m_row, m_box->modelColumn(), m_box->rootModelIndex());
        m_box->view()->scrollTo(index);
        return clickObject(m_box->view(), m_box->view()->visualRect(index).center());
    }

private:
    QComboBox *m_box;
    int m_row;
};

class TabItem : public ItemOwner
{
public:
    TabItem(QTabBar *bar, const QVariantList &selector)
        : m_bar(bar)
    {
        for (int i = 0; i < bar->count() && m_index < 0; ++i) {
            if (shownText(bar->tabText(i)) == selector.value(0).toString())
                m_index = i;
        }
    }

    bool contains() const override { return m_index >= 0; }
    QString text() const override { return shownText(m_bar->tabText(m_index)); }

    [[nodiscard]] QString use(const QString &action) override
    {
        if (action != QLatin1String("click"))
            return unknownAction(action);
        const QRect place = m_bar->tabRect(m_index);
        // A tab that is scrolled out of sight can be chosen by the keys alone.
        if (!m_bar->rect().contains(place.center())) {
            const QString error = whyBlocked(m_bar);
            if (error.isEmpty())
                m_bar->setCurrentIndex(m_index);
            return error;
        }
        return clickObject(m_bar, place.center());
    }

private:
    QTabBar *m_bar;
    int m_index = -1;
};

class MenuItem : public ItemOwner
{
public:
    MenuItem(const QWidget *menu, const QVariantList &selector)
    {
        QString path = selector.value(0).toString();
        QList<QAction *> actions = menu->actions();
        while (!path.isEmpty()) {
            QStringList texts;
            for (const QAction *action : actions)
                texts += shownText(action->text());
            const Step step = nextStep(texts, path);
            m_action = step.index < 0 ? nullptr : actions.at(step.index);
            if (!m_action || (!step.rest.isEmpty() && !m_action->menu())) {
                m_action = nullptr;
                return;
            }
            if (m_action->menu())
                actions = filledMenu(m_action->menu());
            path = step.rest;
        }
    }

    bool contains() const override { return m_action; }
    QString text() const override { return shownText(m_action->text()); }

    [[nodiscard]] QString use(const QString &action) override
    {
        return action == QLatin1String("click") ? clickObject(m_action, std::nullopt)
                                                : unknownAction(action);
    }

private:
    // Some menus are filled when they are about to be shown.
    static QList<QAction *> filledMenu(QMenu *menu)
    {
        if (menu->isEmpty())
            Q_EMIT menu->aboutToShow();
        return menu->actions();
    }

    QPointer<QAction> m_action;
};

// Null for an object without items.
std::unique_ptr<ItemOwner> itemOf(QObject *object, const QVariantList &selector)
{
    if (auto *view = qobject_cast<QAbstractItemView *>(object))
        return std::make_unique<ViewItem>(view, selector);
    if (auto *box = qobject_cast<QComboBox *>(object))
        return std::make_unique<ComboBoxItem>(box, selector);
    if (auto *tabs = qobject_cast<QTabWidget *>(object))
        return std::make_unique<TabItem>(tabs->tabBar(), selector);
    if (auto *bar = qobject_cast<QTabBar *>(object))
        return std::make_unique<TabItem>(bar, selector);
    if (qobject_cast<QMenuBar *>(object) || qobject_cast<QMenu *>(object))
        return std::make_unique<MenuItem>(static_cast<QWidget *>(object), selector);
    return nullptr;
}

QString selectorText(const QVariantList &selector)
{
    return selector.size() == 2 ? QStringLiteral("in row %1, column %2")
                                      .arg(selector.at(0).toString(), selector.at(1).toString())
                                : QStringLiteral("'%1'").arg(selector.value(0).toString());
}

// Null, with an error text, when there is no such item.
std::unique_ptr<ItemOwner> existingItem(QObject *object, const QVariantList &selector,
                                        QString *error)
{
    std::unique_ptr<ItemOwner> item = itemOf(object, selector);
    if (!item)
        *error = QStringLiteral("%1 has no items")
                     .arg(QString::fromLatin1(object->metaObject()->className()));
    else if (!item->contains())
        *error = QStringLiteral("there is no item %1").arg(selectorText(selector));
    return item && item->contains() ? std::move(item) : nullptr;
}

} // namespace

bool hasItem(QObject *object, const QVariantList &selector)
{
    const auto item = itemOf(object, selector);
    return item && item->contains();
}

QString itemText(QObject *object, const QVariantList &selector, QString *error)
{
    const auto item = existingItem(object, selector, error);
    return item ? item->text() : QString();
}

QString useItem(QObject *object, const QString &action, const QVariantList &selector)
{
    QString error;
    const auto item = existingItem(object, selector, &error);
    return item ? item->use(action) : error;
}

} // namespace Morvex
