#include "qtbackend/itemselectors.h"

#include "qtbackend/itempath.h"
#include "qtbackend/items.h"
#include "qtbackend/nodetext.h"

#include <QComboBox>
#include <QHeaderView>
#include <QTabWidget>
#include <QTreeView>

namespace Morvex {
namespace {

// To look for others with the same text takes long, and fetches what a model has left for later.
const int maxCompared = 2000;

bool isCompared(const QAbstractItemModel *model, const QModelIndex &parent, int columns)
{
    return !model->canFetchMore(parent) && qint64(model->rowCount(parent)) * columns <= maxCompared;
}

QVariantMap option(const char *name, int value)
{
    return {{QLatin1String(name), value}};
}

// How many of the texts before the row are the same; negative when none of all others is.
int sameBefore(const QAbstractItemModel *model, const QModelIndex &parent, int row)
{
    const QString text = nodeTextOf(*model, row, parent).text;
    int before = 0;
    int others = 0;
    for (int i = 0; i < model->rowCount(parent); ++i) {
        const bool isSame = i != row && nodeTextOf(*model, i, parent).text == text;
        others += isSame ? 1 : 0;
        before += isSame && i < row ? 1 : 0;
    }
    return others > 0 ? before : -1;
}

QVariantList nodeSelector(QTreeView *tree, const QModelIndex &index)
{
    QStringList path;
    const QModelIndex root = tree->rootIndex();
    for (QModelIndex node = index.sibling(index.row(), 0); node.isValid() && node != root;
         node = node.parent())
        path.prepend(nodeTextOf(*tree->model(), node.row(), node.parent()).text);
    if (path.contains(QString()))
        return {};
    QVariantMap options;
    if (index.column() != nodeTextOf(*tree->model(), index.row(), index.parent()).column)
        options = option("column", index.column());
    const int before = isCompared(tree->model(), index.parent(), 1)
                           ? sameBefore(tree->model(), index.parent(), index.row())
                           : -1;
    if (before >= 0)
        options[QStringLiteral("occurrence")] = before + 1;
    QVariantList selector{itemPathOf(path)};
    if (!options.isEmpty())
        selector += options;
    return selector;
}

QVariantList cellSelector(QAbstractItemView *view, const QModelIndex &index)
{
    const QAbstractItemModel *model = view->model();
    const QModelIndex root = view->rootIndex();
    const QVariantList byText{index.data().toString()};
    const bool isTable = view->inherits("QTableView");
    const bool isNamed = (isTable || index.column() == 0) &&
                         isCompared(model, root, isTable ? model->columnCount(root) : 1);
    return isNamed && hasItem(view, byText) ? byText : QVariantList{index.row(), index.column()};
}

} // namespace

QVariantList selectorOf(QAbstractItemView *view, const QModelIndex &index)
{
    auto *tree = qobject_cast<QTreeView *>(view);
    return tree ? nodeSelector(tree, index) : cellSelector(view, index);
}

QVariantList selectorOf(QComboBox *box, int row)
{
    const QVariantList byText{box->itemText(row)};
    return hasItem(box, byText) ? byText : QVariantList{row, 0};
}

QVariantList selectorOf(QTabBar *bar, int tab)
{
    const QVariantList byText{shownText(bar->tabText(tab))};
    return hasItem(tabsOf(bar), byText) ? byText : QVariantList{0, tab};
}

QVariantList selectorOf(QHeaderView *header, int section)
{
    const QVariantList byText{
        header->model()->headerData(section, header->orientation()).toString()};
    if (header->count() <= maxCompared && hasItem(header, byText))
        return byText;
    return header->orientation() == Qt::Horizontal ? QVariantList{0, section}
                                                   : QVariantList{section, 0};
}

QWidget *tabsOf(QTabBar *bar)
{
    auto *tabs = qobject_cast<QTabWidget *>(bar->parentWidget());
    return tabs && tabs->tabBar() == bar ? static_cast<QWidget *>(tabs) : bar;
}

} // namespace Morvex
