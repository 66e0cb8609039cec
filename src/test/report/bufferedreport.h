#pragma once

#include "morvex_export.h"

#include <QByteArray>

#include <deque>

namespace Morvex {

class ReportFile;

/// The text of a report that is held in memory up to its end, already in the form of the file,
/// which takes far less than the entries. It may have one gap, for the start of the current test
/// case, whose counts are known later.
class MORVEX_EXPORT BufferedReport
{
public:
    void append(const QByteArray &text);

    /// Begins a gap after all text so far; a gap that is open must be filled first.
    void openGap() { m_hasGap = true; }
    void fillGap(const QByteArray &text);

    /// The gap must be filled.
    void writeTo(ReportFile &file) const;

private:
    // In pieces: no array is larger than it can be, and growing copies none of the others.
    using Pieces = std::deque<QByteArray>;

    static void append(Pieces &pieces, const QByteArray &text);

    Pieces m_text;
    Pieces m_textAfterGap;
    bool m_hasGap = false;
};

} // namespace Morvex
