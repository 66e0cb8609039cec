#include "qtbackend/showncells.h"

#include "qtbackend/longlist.h"

#include <QAbstractItemModel>
#include <QAbstractItemView>
#include <QHeaderView>
#include <QListView>
#include <QTableView>
#include <QTreeView>

namespace Morvex {
namespace {

// Tables may be of any size, and reports are read by people.
const int maxCells = 10000;
// Each one is a call of the application, whose main thread waits meanwhile.
const int maxSummedCells = 1000 * 1000;

bool isRowHidden(const QAbstractItemView *view, int row)
{
    if (const auto *table = qobject_cast<const QTableView *>(view))
        return table->isRowHidden(row);
    if (const auto *list = qobject_cast<const QListView *>(view))
        return list->isRowHidden(row);
    const auto *tree = qobject_cast<const QTreeView *>(view);
    return tree && tree->isRowHidden(row, tree->rootIndex());
}

bool isColumnHidden(const QAbstractItemView *view, int column)
{
    if (const auto *table = qobject_cast<const QTableView *>(view))
        return table->isColumnHidden(column);
    // A list shows one column of its model.
    if (const auto *list = qobject_cast<const QListView *>(view))
        return column != list->modelColumn();
    const auto *tree = qobject_cast<const QTreeView *>(view);
    return tree && tree->isColumnHidden(column);
}

template <typename IsHidden>
std::vector<int> shownOf(const QAbstractItemView *view, int count, const IsHidden &isHidden)
{
    std::vector<int> shown;
    for (int i = 0; i < count; ++i) {
        if (!isHidden(view, i))
            shown.push_back(i);
    }
    return shown;
}

QString markOf(const QModelIndex &index)
{
    const QVariant state = index.data(Qt::CheckStateRole);
    if (!state.isValid())
        return {};
    switch (state.toInt()) {
    case Qt::Checked:
        return QStringLiteral("[x] ");
    case Qt::Unchecked:
        return QStringLiteral("[ ] ");
    default:
        return QStringLiteral("[-] ");
    }
}

class CellTexts
{
public:
    explicit CellTexts(const QAbstractItemView *view)
        : m_columns(shownColumns(view))
        , m_lines(maxCells / columnCount(), maxSummedCells / columnCount())
    {
    }

    // The first index of a row that is @p depth levels below the top.
    void addRow(const QModelIndex &row, int depth)
    {
        m_lines.add([&] { return lineOf(row, depth); });
    }

    QString text() const { return m_lines.text(); }

private:
    int columnCount() const { return qMax(1, static_cast<int>(m_columns.size())); }

    QString lineOf(const QModelIndex &row, int depth) const
    {
        QString line(depth * 2, QLatin1Char(' '));
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            const QModelIndex cell = row.siblingAtColumn(m_columns[i]);
            line += (i > 0 ? QStringLiteral("\t") : QString()) + markOf(cell) +
                    cell.data(Qt::DisplayRole).toString();
        }
        return line;
    }

    const std::vector<int> m_columns;
    LongList m_lines;
};

int depthOf(QModelIndex index, const QModelIndex &root)
{
    int depth = 0;
    for (index = index.parent(); index.isValid() && index != root; index = index.parent())
        ++depth;
    return depth;
}

} // namespace

std::vector<int> shownRows(const QAbstractItemView *view)
{
    const QAbstractItemModel *model = view->model();
    return model ? shownOf(view, model->rowCount(view->rootIndex()), isRowHidden)
                 : std::vector<int>();
}

std::vector<int> shownColumns(const QAbstractItemView *view)
{
    const QAbstractItemModel *model = view->model();
    return model ? shownOf(view, model->columnCount(view->rootIndex()), isColumnHidden)
                 : std::vector<int>();
}

QString shownCells(const QAbstractItemView *view)
{
    const QAbstractItemModel *model = view->model();
    if (!model)
        return {};
    CellTexts texts(view);
    const QModelIndex root = view->rootIndex();
    const std::vector<int> rows = shownRows(view);
    if (const auto *tree = qobject_cast<const QTreeView *>(view)) {
        QModelIndex index = rows.empty() ? QModelIndex() : model->index(rows.front(), 0, root);
        for (; index.isValid(); index = tree->indexBelow(index))
            texts.addRow(index, depthOf(index, root));
        return texts.text();
    }
    for (const int row : rows)
        texts.addRow(model->index(row, 0, root), 0);
    return texts.text();
}

QString shownSections(const QHeaderView *header)
{
    const QAbstractItemModel *model = header->model();
    LongList titles(maxCells);
    for (int place = 0; model && place < header->count(); ++place) {
        const int section = header->logicalIndex(place);
        if (!header->isSectionHidden(section))
            titles.add(
                [&] { return model->headerData(section, header->orientation()).toString(); });
    }
    return titles.text();
}

} // namespace Morvex
