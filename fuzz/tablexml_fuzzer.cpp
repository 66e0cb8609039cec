#include "shared/xmltablerange.h"
#include "test/tablediff.h"

#include <cstdint>

using namespace Morvex;

// The input is cut in half: two tables to compare.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    const std::string xml(reinterpret_cast<const char *>(data), size);
    XmlTableRange range;
    if (range.loadContentFromXml(xml))
        range.contentAsXml(TableRange::TextContent | TableRange::BackgroundColorContent);
    FList<TableDiff::Element> diff;
    table_diff_xml(xml.substr(0, size / 2), xml.substr(size / 2), &diff);
    return 0;
}
