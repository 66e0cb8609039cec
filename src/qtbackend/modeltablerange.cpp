#include "qtbackend/modeltablerange.h"

#include "qtbackend/showncells.h"

#include <QAbstractItemView>
#include <QBrush>
#include <QHeaderView>

namespace Morvex {
namespace {

// XML has no way to write the others, not even as references.
QString withoutForbiddenCharacters(QString text)
{
    for (QChar &character : text) {
        const ushort code = character.unicode();
        const bool isControl = code < 0x20 && code != '\t' && code != '\n' && code != '\r';
        if (isControl || code == 0xfffe || code == 0xffff)
            character = QChar::ReplacementCharacter;
    }
    return text;
}

} // namespace

ModelTableRange::ModelTableRange(QAbstractItemView *view, int firstRow, int endRow, int firstColumn,
                                 int endColumn)
    : TableRange(firstRow, endRow, firstColumn, endColumn)
    , m_view(view)
    , m_rows(shownRows(view))
    , m_columns(shownColumns(view))
{
    const auto rows = static_cast<int>(m_rows.size());
    const auto columns = static_cast<int>(m_columns.size());
    setRange(qMin(firstRow, rows), qMin(endRow, rows), qMin(firstColumn, columns),
             qMin(endColumn, columns));
}

bool ModelTableRange::isTable(const QObject *object)
{
    return qobject_cast<const QAbstractItemView *>(object) &&
           !qobject_cast<const QHeaderView *>(object);
}

int ModelTableRange::tableRowCount() const
{
    return static_cast<int>(m_rows.size());
}

int ModelTableRange::tableColumnCount() const
{
    return static_cast<int>(m_columns.size());
}

QVariant ModelTableRange::data(int row, int column, int role) const
{
    const bool isInside =
        row >= 0 && row < tableRowCount() && column >= 0 && column < tableColumnCount();
    if (!isInside || !m_view || !m_view->model())
        return {};
    return m_view->model()
        ->index(m_rows[static_cast<std::size_t>(row)], m_columns[static_cast<std::size_t>(column)],
                m_view->rootIndex())
        .data(role);
}

TableRange::Color ModelTableRange::tableBackgroundColor(int row, int column) const
{
    const QVariant background = data(row, column, Qt::BackgroundRole);
    if (!background.canConvert<QBrush>())
        return {};
    const QBrush brush = background.value<QBrush>();
    if (brush.style() == Qt::NoBrush)
        return {};
    const QColor color = brush.color();
    return {quint8(color.alpha()), quint8(color.red()), quint8(color.green()),
            quint8(color.blue())};
}

std::string ModelTableRange::tableText(int row, int column) const
{
    return withoutForbiddenCharacters(data(row, column, Qt::DisplayRole).toString()).toStdString();
}

} // namespace Morvex
