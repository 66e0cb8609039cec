#include "test/upload/uploadlines.h"

#include "test/openreportfile.h"

#include <unistd.h>

namespace Morvex {
namespace {

// Nobody is left to be told when it fails.
void writeLine(int descriptor, const QByteArray &text)
{
    writeWhole(descriptor, text.constData(), static_cast<std::size_t>(text.size()));
}

} // namespace

void writeOutputLine(const QByteArray &text)
{
    writeLine(STDOUT_FILENO, text);
}

void writeErrorLine(const QByteArray &text)
{
    writeLine(STDERR_FILENO, text);
}

} // namespace Morvex
