#include "qtbackend/viewitem.h"

#include "qtbackend/celleditor.h"
#include "qtbackend/inputsequence.h"
#include "qtbackend/mousetarget.h"
#include "qtbackend/nodetext.h"
#include "qtbackend/userinput.h"

#include <QApplication>
#include <QHeaderView>
#include <QTreeView>

#include <memory>

namespace Morvex {
namespace {

// A model may have more to fetch without end.
const int maxFetches = 1000;
const int maxOpeningMs = 200;

int fetchedRowCount(QAbstractItemModel *model, const QModelIndex &parent)
{
    for (int i = 0; i < maxFetches && model->canFetchMore(parent); ++i) {
        const int before = model->rowCount(parent);
        model->fetchMore(parent);
        // What comes later is found by looking again.
        if (model->rowCount(parent) == before)
            break;
    }
    return model->rowCount(parent);
}

QStringList childTexts(QAbstractItemModel *model, const QModelIndex &parent)
{
    QStringList texts;
    const int rows = fetchedRowCount(model, parent);
    for (int row = 0; row < rows; ++row)
        texts += nodeTextOf(*model, row, parent).text;
    return texts;
}

bool hasCheckBox(const QModelIndex &index)
{
    return index.flags() & Qt::ItemIsUserCheckable && index.data(Qt::CheckStateRole).isValid();
}

bool isChecked(const QModelIndex &index)
{
    return index.data(Qt::CheckStateRole).toInt() == Qt::Checked;
}

// The place of its mark before the node; empty where there is none.
QRect branchOf(const QTreeView &tree, const QModelIndex &node)
{
    const bool isTop = node.parent() == tree.rootIndex();
    const QRect item = tree.visualRect(node);
    if (!tree.itemsExpandable() || (isTop && !tree.rootIsDecorated()) || item.isEmpty() ||
        tree.header()->logicalIndex(0) != node.column() || !node.model()->hasChildren(node))
        return {};
    const int width = tree.indentation();
    const int left = tree.isRightToLeft() ? item.right() + 1 : item.left() - width;
    return {left, item.top(), width, item.height()};
}

// Also while the application is not the active one.
QWidget *focusWidgetFor(const QWidget *widget)
{
    QWidget *focus = QApplication::focusWidget();
    return focus ? focus : widget->window()->focusWidget();
}

// Of the item that is edited now.
QString fillEditor(QAbstractItemView *view, const QString &text, InputSequence &input)
{
    const QPointer<QWidget> editor = QApplication::focusWidget();
    const bool isEditor = editedView(editor) == view;
    if (isEditor && isGivenValue(editor)) {
        const QString error = giveValue(editor, text);
        return error.isEmpty() ? typeKeys(view, QStringLiteral("<Return>"), input) : error;
    }
    QString keys = text;
    keys.replace(QLatin1Char('<'), QLatin1String("<<"));
    const bool isLong = isEditor && hasLines(editor);
    const QString error = typeKeys(view,
                                   QLatin1String("<Ctrl+A><Backspace>") + keys +
                                       (isLong ? QString() : QStringLiteral("<Return>")),
                                   input);
    if (isLong)
        input.add([view = QPointer<QAbstractItemView>(view)] {
            if (view)
                view->setFocus(Qt::OtherFocusReason);
            return QString();
        });
    return error;
}

} // namespace

ViewItem::ViewItem(QAbstractItemView *view, const ItemSelector &selector)
    : m_view(view)
{
    if (!view->model())
        m_error = QStringLiteral("the view has no model");
    else if (selector.isCell)
        findCell(selector);
    else if (qobject_cast<QTreeView *>(view))
        findNode(selector);
    else
        findCellWithText(selector);
}

void ViewItem::findCell(const ItemSelector &selector)
{
    QAbstractItemModel *model = m_view->model();
    const QModelIndex root = m_view->rootIndex();
    m_index = model->index(selector.row, selector.column, root);
    if (!m_index.isValid())
        m_error = QStringLiteral("there is no item %1; there are %2 rows and %3 columns")
                      .arg(selector.describe(), QString::number(model->rowCount(root)),
                           QString::number(model->columnCount(root)));
}

// In a table any cell with this text.
void ViewItem::findCellWithText(const ItemSelector &selector)
{
    QAbstractItemModel *model = m_view->model();
    const QModelIndex root = m_view->rootIndex();
    const bool isList = !m_view->inherits("QTableView");
    const int columns = isList ? 1 : model->columnCount(root);
    const int rows = fetchedRowCount(model, root);
    QStringList texts;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            texts += model->index(row, column, root).data().toString();
    }
    // No path: these have one level.
    QList<int> found;
    for (int i = 0; i < texts.size(); ++i) {
        if (texts.at(i) == selector.path && !selector.path.isEmpty())
            found += i;
    }
    const int wanted = qMax(selector.occurrence, 1) - 1;
    if (found.size() > 1 && selector.occurrence == 0)
        m_error = QStringLiteral("there are %1 items %2, the first in row %3, column %4 and row "
                                 "%5, column %6; name it by its row and column")
                      .arg(QString::number(found.size()), selector.describe())
                      .arg(found.at(0) / columns)
                      .arg(found.at(0) % columns)
                      .arg(found.at(1) / columns)
                      .arg(found.at(1) % columns);
    else if (wanted >= found.size())
        m_error =
            QStringLiteral("there is no item %1%2").arg(selector.describe(), listedTexts(texts));
    else
        m_index = model->index(found.at(wanted) / columns, found.at(wanted) % columns, root);
}

void ViewItem::findNode(const ItemSelector &selector)
{
    QAbstractItemModel *model = m_view->model();
    QModelIndex index = m_view->rootIndex();
    ItemPath path(selector);
    while (!path.isAtEnd()) {
        const int row = path.next(childTexts(model, index));
        if (row >= 0)
            index = model->index(row, 0, index);
    }
    m_error = path.error();
    const int column = selector.column < 0
                           ? qMax(nodeTextOf(*model, index.row(), index.parent()).column, 0)
                           : selector.column;
    if (m_error.isEmpty())
        m_index = index.sibling(index.row(), column);
    if (m_error.isEmpty() && !m_index.isValid())
        m_error = QStringLiteral("the item %1 has no column %2")
                      .arg(selector.describe(), QString::number(column));
}

QVariantMap ViewItem::properties() const
{
    QVariantMap properties;
    if (!m_view || !m_index.isValid())
        return properties;
    const Qt::ItemFlags flags = m_index.flags();
    properties[QStringLiteral("row")] = m_index.row();
    properties[QStringLiteral("column")] = m_index.column();
    properties[QStringLiteral("enabled")] = bool(flags & Qt::ItemIsEnabled);
    properties[QStringLiteral("editable")] = bool(flags & Qt::ItemIsEditable);
    properties[QStringLiteral("selected")] =
        m_view->selectionModel() && m_view->selectionModel()->isSelected(m_index);
    properties[QStringLiteral("current")] = m_view->currentIndex() == m_index;
    properties[QStringLiteral("toolTip")] = m_index.data(Qt::ToolTipRole).toString();
    if (m_index.data(Qt::CheckStateRole).isValid())
        properties[QStringLiteral("checked")] = isChecked(m_index);
    if (const auto *tree = qobject_cast<QTreeView *>(m_view.data())) {
        properties[QStringLiteral("expanded")] = tree->isExpanded(node());
        properties[QStringLiteral("count")] = m_view->model()->rowCount(node());
    }
    return properties;
}

void ViewItem::reveal(InputSequence &input)
{
    const QPointer<QAbstractItemView> view = m_view;
    const QPersistentModelIndex index = m_index;
    input.add([view, index] {
        if (view && index.isValid())
            view->scrollTo(index);
        return QString();
    });
}

QRect ViewItem::place() const
{
    return m_view && m_index.isValid() ? m_view->visualRect(m_index) : QRect();
}

QString ViewItem::use(const QString &action, const QVariant &value, InputSequence &input)
{
    if (action == QLatin1String("expand") || action == QLatin1String("collapse") ||
        action == QLatin1String("toggle"))
        return expand(action, input);
    if (action == QLatin1String("check") || action == QLatin1String("uncheck"))
        return check(action == QLatin1String("check"), input);
    if (action == QLatin1String("edit"))
        return edit(value.toString(), input);
    return unknownAction(action);
}

QString ViewItem::expand(const QString &action, InputSequence &input)
{
    const QPointer<QTreeView> tree = qobject_cast<QTreeView *>(m_view.data());
    if (!tree)
        return unknownAction(action);
    reveal(input);
    const QPersistentModelIndex index = node();
    const bool isToggled = action == QLatin1String("toggle");
    const bool isExpanded =
        isToggled ? !tree->isExpanded(index) : action == QLatin1String("expand");
    input.add([tree, index, isExpanded] {
        const QRect branch = tree ? branchOf(*tree, index) : QRect();
        if (!branch.isEmpty() && tree->isExpanded(index) != isExpanded)
            clickWhereFree(tree->viewport(), branch.center());
        return QString();
    });
    // A node may have no branch that can be seen.
    input.add([tree, index, isExpanded] {
        if (tree)
            tree->setExpanded(index, isExpanded);
        return QString();
    });
    return {};
}

// The space bar: where the box is depends on how the item is drawn.
QString ViewItem::check(bool checked, InputSequence &input)
{
    if (!hasCheckBox(m_index))
        return QStringLiteral("the item can't be checked");
    if (isChecked(m_index) == checked)
        return {};
    reveal(input);
    const QPointer<QAbstractItemView> view = m_view;
    const QPersistentModelIndex index = m_index;
    input.add([view, index] {
        if (view)
            view->setCurrentIndex(index);
        return QString();
    });
    const QString error = typeText(view, QStringLiteral("<Space>"), input);
    if (!error.isEmpty())
        return error;
    input.add([index, checked] {
        return index.isValid() && isChecked(index) != checked
                   ? QStringLiteral("the item has not changed")
                   : QString();
    });
    return {};
}

QString ViewItem::edit(const QString &text, InputSequence &input)
{
    if (!(m_index.flags() & Qt::ItemIsEditable) ||
        m_view->editTriggers() == QAbstractItemView::NoEditTriggers)
        return QStringLiteral("the item can't be edited");
    reveal(input);
    const QPointer<QAbstractItemView> view = m_view;
    const QPersistentModelIndex index = m_index;
    const auto focusBefore = std::make_shared<QPointer<QWidget>>();
    // One of the application's own may be no child of the view.
    const auto isOpen = [view, focusBefore] {
        return !view || isEditing(view) || focusWidgetFor(view) != *focusBefore;
    };
    input.add([view, index, focusBefore] {
        if (!view)
            return QString();
        view->setFocus(Qt::OtherFocusReason);
        *focusBefore = focusWidgetFor(view);
        view->setCurrentIndex(index);
        view->edit(index);
        return QString();
    });
    // After a second click the view opens it by itself later.
    input.waitUntil(isOpen, QApplication::doubleClickInterval() + maxOpeningMs);
    input.add([view, text, isOpen, &input] {
        if (!view)
            return QStringLiteral("the view no longer exists");
        return isOpen() ? fillEditor(view, text, input)
                        : QStringLiteral("no editor has opened for the item");
    });
    return {};
}

} // namespace Morvex
