#pragma once

#include "morvex_export.h"
#include "objectmodel/flist.h"

#include <QMap>
#include <QString>
#include <QVariant>

#include <string>

class QDataStream;

namespace Morvex {

class XmlTableRange;

/// The difference of two tables, as a list of elements.
class MORVEX_EXPORT TableDiff
{
public:
    struct MORVEX_EXPORT Cell
    {
        /// Both count from 0.
        int row = 0;
        int column = 0;
        /// "text" (QString) and "backgroundColor" (QColor) are in use.
        QMap<QString, QVariant> properties;
    };

    struct MORVEX_EXPORT Subject
    {
        enum Type { CELL, ROW, COLUMN };

        Type type = CELL;
        FList<Cell> cells;
    };

    struct MORVEX_EXPORT Element
    {
        enum Kind { CONTEXT, INSERTION, DELETION };

        Kind kind = CONTEXT;
        Subject subject;
    };
};

MORVEX_EXPORT bool operator==(const TableDiff::Cell &a, const TableDiff::Cell &b);
MORVEX_EXPORT bool operator==(const TableDiff::Subject &a, const TableDiff::Subject &b);
MORVEX_EXPORT bool operator==(const TableDiff::Element &a, const TableDiff::Element &b);

MORVEX_EXPORT QDataStream &operator<<(QDataStream &stream,
                                      const FList<TableDiff::Element> &elements);

/// A count beyond the bytes that are there, and a property of another type than a text or a
/// colour, fails the stream (ReadCorruptData) and gives the elements before it.
MORVEX_EXPORT QDataStream &operator>>(QDataStream &stream, FList<TableDiff::Element> &elements);

/// Parses both documents and compares them. False when the tables differ or one can't be parsed;
/// in the latter case @p out stays as it was.
MORVEX_EXPORT bool table_diff_xml(const std::string &expectedXml, const std::string &actualXml,
                                  FList<TableDiff::Element> *out);

/// True when @p out is empty afterwards: the tables are equal. The expected texts are patterns and
/// are cached in both ranges, so that a range serves one comparison at a time.
MORVEX_EXPORT bool table_diff_range(const XmlTableRange &expected, const XmlTableRange &actual,
                                    FList<TableDiff::Element> *out);

} // namespace Morvex
