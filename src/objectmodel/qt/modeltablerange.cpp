#include "objectmodel/qt/modeltablerange.h"

#include <QAbstractItemView>
#include <QBrush>
#include <QHeaderView>
#include <QListView>

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
{
}

bool ModelTableRange::isTable(const QObject *object)
{
    return qobject_cast<const QAbstractItemView *>(object) &&
           !qobject_cast<const QHeaderView *>(object);
}

int ModelTableRange::tableRowCount() const
{
    return m_view && m_view->model() ? m_view->model()->rowCount(m_view->rootIndex()) : 0;
}

// A list shows one column of its model.
int ModelTableRange::tableColumnCount() const
{
    if (!m_view || !m_view->model())
        return 0;
    return qobject_cast<QListView *>(m_view.data())
               ? 1
               : m_view->model()->columnCount(m_view->rootIndex());
}

int ModelTableRange::firstColumn() const
{
    const auto *list = qobject_cast<QListView *>(m_view.data());
    return list ? list->modelColumn() : 0;
}

QVariant ModelTableRange::data(int row, int column, int role) const
{
    if (!m_view || !m_view->model())
        return {};
    return m_view->model()->index(row, column + firstColumn(), m_view->rootIndex()).data(role);
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
