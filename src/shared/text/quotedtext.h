#pragma once

#include <QString>
#include <QStringList>

namespace Morvex {

/// The text between double quotes, with a backslash before what would end or break it.
QString quoted(const QString &text);

struct QuotedTexts
{
    /// Those that were read whole.
    QStringList texts;
    /// The character after a backslash that means nothing, which ended the reading; null for none.
    QChar unknownEscape;
    /// The last text has no closing quote.
    bool isOpen = false;
};

/// All that is between double quotes; what is outside of them is passed over.
QuotedTexts readQuoted(const QString &text);

} // namespace Morvex
