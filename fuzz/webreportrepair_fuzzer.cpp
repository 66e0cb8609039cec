#include "fuzzinput.h"
#include "test/webreport/webreportrepair.h"

using namespace Morvex;

// Whatever is in the file: the edits are within it, in order, and what they leave is whole.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const auto *data = reinterpret_cast<const char *>(bytes);
    const auto length = static_cast<qint64>(size);
    const WebReportEdits edits = webReportEdits(data, length);
    require(edits.error.isEmpty() || edits.edits.empty());
    qint64 position = 0;
    for (const WebReportEdit &edit : edits.edits) {
        require(position <= edit.begin && edit.begin <= edit.end && edit.end <= length);
        position = edit.end;
    }
    if (!edits.error.isEmpty())
        return 0;
    const QByteArray repaired = applyWebReportEdits(data, length, edits.edits);
    const WebReportEdits again = webReportEdits(repaired.constData(), repaired.size());
    require(again.error.isEmpty() && again.edits.empty());
    return 0;
}
