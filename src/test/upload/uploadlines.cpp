#include "test/upload/uploadlines.h"

#include "test/openreportfile.h"

#include <unistd.h>

namespace Morvex {
namespace {

// Nobody is left to hear that it fails.
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

void reportCutOff(const QByteArray &reason)
{
    noteIncompleteReport();
    writeErrorLine("morvexrunner: quillbase: the upload has ended before the run, the server does "
                   "not have all of it" +
                   (reason.isEmpty() ? reason : " (" + reason + ')') + '\n');
}

} // namespace Morvex
