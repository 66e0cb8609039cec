#include "test/child/rawentrystream.h"
#include "test/nullreportgenerator.h"
#include "test/testcaseprocess.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

using namespace Morvex;

// As a stream, and as a payload whose entry has to survive another trip.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    const char *bytes = reinterpret_cast<const char *>(data);
    TestResult result(new NullReportGenerator);
    DatagramBuffer buffer;
    buffer.append(bytes, size);
    buffer.convertToTestResults(&result, 1);

    QByteArray datagram;
    TestResult::Entry first = decodeEntry(bytes, size);
    // Qt writes a time that does not exist in other bytes than it read.
    first.time = QDateTime();
    encodeEntry(first, datagram);
    const TestResult::Entry entry =
        decodeEntry(datagram.constData() + rawLengthSize,
                    static_cast<std::size_t>(datagram.size()) - rawLengthSize);
    if (entry.type < TestResult::START || entry.type > TestResult::NONE ||
        entry.vpType > TestResult::VISUAL_VP)
        std::abort();
    QByteArray again;
    encodeEntry(entry, again);
    if (again != datagram)
        std::abort();
    return 0;
}
