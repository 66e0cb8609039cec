#pragma once

#include <QByteArray>

namespace Morvex {

// Both threads of an upload write to the standard streams: each text leaves in one piece, so that
// no line breaks another.

void writeOutputLine(const QByteArray &text);
void writeErrorLine(const QByteArray &text);

/// Says why the server lacks something of the run, and notes it. An empty reason is left out.
void reportCutOff(const QByteArray &reason);

} // namespace Morvex
