#include "test/tablediff.h"

#include <QDataStream>
#include <QIODevice>

#include <utility>

namespace Morvex {
namespace {

// The fewest bytes that an element, a cell and a property take in the stream.
const qint64 minElementSize = 1 + 1 + 8;
const qint64 minCellSize = 4 + 4 + 4;
const qint64 minPropertySize = 4 + 4 + 1;

bool fitsStream(QDataStream &stream, qint64 count, qint64 minSize)
{
    if (stream.status() == QDataStream::Ok && count >= 0 &&
        count <= stream.device()->bytesAvailable() / minSize)
        return true;
    stream.setStatus(QDataStream::ReadCorruptData);
    return false;
}

// QVariant's own reader would build any type that the bytes ask for.
QVariant readVariant(QDataStream &stream)
{
    quint32 type = 0;
    quint8 isNull = 0;
    stream >> type >> isNull;
    if (type == QMetaType::QString) {
        QString text;
        stream >> text;
        return text;
    }
    // By its number: the process of a test case links no QColor. Without it the bytes make no
    // sense.
    if (type == QMetaType::QColor) {
        QVariant color(static_cast<QVariant::Type>(type));
        if (color.isValid() && QMetaType::load(stream, QMetaType::QColor, color.data()))
            return color;
    }
    stream.setStatus(QDataStream::ReadCorruptData);
    return {};
}

void readProperties(QDataStream &stream, QMap<QString, QVariant> &properties)
{
    qint32 count = 0;
    stream >> count;
    if (!fitsStream(stream, count, minPropertySize))
        return;
    while (count-- > 0 && stream.status() == QDataStream::Ok) {
        QString key;
        stream >> key;
        const QVariant value = readVariant(stream);
        if (stream.status() == QDataStream::Ok)
            properties.insert(key, value);
    }
}

void readCells(QDataStream &stream, FList<TableDiff::Cell> &cells)
{
    qint64 count = 0;
    stream >> count;
    if (!fitsStream(stream, count, minCellSize))
        return;
    while (count-- > 0 && stream.status() == QDataStream::Ok) {
        TableDiff::Cell cell;
        qint32 row = 0;
        qint32 column = 0;
        stream >> row >> column;
        cell.row = row;
        cell.column = column;
        readProperties(stream, cell.properties);
        if (stream.status() == QDataStream::Ok)
            cells.append(std::move(cell));
    }
}

// From the last key to the first, which is not the order of all versions of QMap's own operator.
void writeProperties(QDataStream &stream, const QMap<QString, QVariant> &properties)
{
    stream << qint32(properties.size());
    for (auto property = properties.end(); property != properties.begin();) {
        --property;
        stream << property.key() << property.value();
    }
}

template <typename Enum>
Enum enumerator(qint8 number, Enum last)
{
    return number >= 0 && number <= last ? static_cast<Enum>(number) : Enum();
}

} // namespace

QDataStream &operator<<(QDataStream &stream, const FList<TableDiff::Element> &elements)
{
    stream << qint64(elements.count());
    for (const TableDiff::Element &element : elements) {
        stream << qint8(element.kind) << qint8(element.subject.type);
        stream << qint64(element.subject.cells.count());
        for (const TableDiff::Cell &cell : element.subject.cells) {
            stream << qint32(cell.row) << qint32(cell.column);
            writeProperties(stream, cell.properties);
        }
    }
    return stream;
}

QDataStream &operator>>(QDataStream &stream, FList<TableDiff::Element> &elements)
{
    elements.clear();
    qint64 count = 0;
    stream >> count;
    if (!fitsStream(stream, count, minElementSize))
        return stream;
    while (count-- > 0 && stream.status() == QDataStream::Ok) {
        TableDiff::Element element;
        qint8 kind = 0;
        qint8 type = 0;
        stream >> kind >> type;
        element.kind = enumerator(kind, TableDiff::Element::DELETION);
        element.subject.type = enumerator(type, TableDiff::Subject::COLUMN);
        readCells(stream, element.subject.cells);
        if (stream.status() == QDataStream::Ok)
            elements.append(std::move(element));
    }
    return stream;
}

} // namespace Morvex
