#include "test/report/stacklines.h"

#include "shared/xmltext.h"

namespace Morvex {

QStringList stackLines(const std::vector<LineInfo> &stack)
{
    QStringList lines;
    for (const LineInfo &frame : stack)
        lines += QLatin1String("  at ") + escapeNonPrintable(frame.fileName()) + QLatin1Char(':') +
                 QString::number(frame.lineNumber());
    return lines;
}

} // namespace Morvex
