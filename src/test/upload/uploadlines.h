#pragma once

#include <QByteArray>

namespace Morvex {

// Both threads of an upload write to the standard streams: each text leaves in one piece, so that
// no line breaks another.

void writeOutputLine(const QByteArray &text);
void writeErrorLine(const QByteArray &text);

} // namespace Morvex
