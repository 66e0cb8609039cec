#include "qtbackend/modeltablerange.h"

#include "qtbackend/showncells.h"

#include <QAbstractItemView>
#include <QBrush>
#include <QHeaderView>
#include <QXmlStreamWriter>

#include <algorithm>

namespace Morvex {
namespace {

// Readers take a line break that is not written as a reference for a blank. The other control
// characters have no form in XML, not even as references.
void writeText(QXmlStreamWriter &writer, const QString &text)
{
    QString plain;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code == '\t' || code == '\n' || code == '\r') {
            writer.writeCharacters(plain);
            writer.writeEntityReference(QStringLiteral("#%1").arg(code));
            plain.clear();
        } else {
            const bool isForbidden = code < 0x20 || code == 0xfffe || code == 0xffff;
            plain += isForbidden ? QChar(QChar::ReplacementCharacter) : character;
        }
    }
    writer.writeCharacters(plain);
}

std::vector<int> part(const std::vector<int> &shown, int first, int end)
{
    if (first < 0 || end < 0)
        return shown;
    const auto count = static_cast<int>(shown.size());
    const int from = std::min(first, count);
    const int to = std::max(from, std::min(end, count));
    return {shown.begin() + from, shown.begin() + to};
}

} // namespace

ModelTableRange::ModelTableRange(QAbstractItemView *view, int firstRow, int endRow, int firstColumn,
                                 int endColumn)
    : m_view(view)
    , m_rows(part(shownRows(view), firstRow, endRow))
    , m_columns(part(shownColumns(view), firstColumn, endColumn))
{
}

bool ModelTableRange::isTable(const QObject *object)
{
    return qobject_cast<const QAbstractItemView *>(object) &&
           !qobject_cast<const QHeaderView *>(object);
}

QString ModelTableRange::contentAsXml(int flags) const
{
    if (flags == 0)
        return {};
    QByteArray xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartDocument();
    writer.writeStartElement(QStringLiteral("table"));
    if (flags & TextContent)
        writer.writeAttribute(QStringLiteral("hasText"), QStringLiteral("1"));
    if (flags & BackgroundColorContent)
        writer.writeAttribute(QStringLiteral("hasBackgroundColor"), QStringLiteral("1"));
    for (const int row : m_rows) {
        writer.writeStartElement(QStringLiteral("row"));
        for (const int column : m_columns)
            writeCell(writer, row, column, flags);
        writer.writeEndElement();
    }
    writer.writeEndDocument();
    return QString::fromUtf8(xml);
}

void ModelTableRange::writeCell(QXmlStreamWriter &writer, int row, int column, int flags) const
{
    writer.writeStartElement(QStringLiteral("cell"));
    if (flags & TextContent) {
        writer.writeStartElement(QStringLiteral("text"));
        writeText(writer, data(row, column, Qt::DisplayRole).toString());
        writer.writeEndElement();
    }
    const QColor color = flags & BackgroundColorContent ? backgroundColor(row, column) : QColor();
    if (color.isValid() && color.rgba() != 0)
        writer.writeTextElement(QStringLiteral("backgroundColor"),
                                color.name(QColor::HexArgb).toUpper());
    writer.writeEndElement();
}

QVariant ModelTableRange::data(int row, int column, int role) const
{
    return m_view && m_view->model()
               ? m_view->model()->index(row, column, m_view->rootIndex()).data(role)
               : QVariant();
}

// Invalid for none.
QColor ModelTableRange::backgroundColor(int row, int column) const
{
    const QVariant background = data(row, column, Qt::BackgroundRole);
    const QBrush brush = background.canConvert<QBrush>() ? background.value<QBrush>() : QBrush();
    return brush.style() == Qt::NoBrush ? QColor() : brush.color();
}

} // namespace Morvex
