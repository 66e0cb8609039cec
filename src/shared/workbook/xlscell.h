#pragma once

#include <QString>

namespace Morvex {

/// The value of a cell of an .xls workbook.
struct XlsCell
{
    enum Type { Empty, Boolean, Integer, Float, String, RichText, Error };

    Type type = Empty;
    /// Of texts.
    QString text;
    /// Of all other types; 0 and 1 of a boolean.
    double number = 0;

    /// What a record has of the cell: a float has six digits, "?" stands for what has no text.
    QString toText() const;
    /// The same, but empty for what has no text.
    QString asString() const;
};

} // namespace Morvex
