#include "fuzzinput.h"

#include "test/webreport/visualtrees.h"

#include <algorithm>

namespace {

// An element that points of the corpus know.
const char snapshot[] = "<ui version=\"1.0\"><execution><state><element id=\"1\" class=\"QLabel\" "
                        "simplifiedType=\"QLabel\">"
                        "<abstractProperties><geometry "
                        "isRelative=\"0\"><x>0</x><y>0</y><width>200</width><height>60</height>"
                        "</geometry></abstractProperties><properties><property "
                        "name=\"text\"><string>a</string></property>"
                        "</properties></element></state></execution></ui>";

} // namespace

// The file of a visual verification point and, after a zero byte, a snapshot.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    const uint8_t *end = data + size;
    const uint8_t *zero = std::find(data, end, 0);
    const QString point = fuzzInputFile(data, static_cast<std::size_t>(zero - data), "point.xml");
    const QString other =
        zero == end
            ? fuzzInputFile(reinterpret_cast<const uint8_t *>(snapshot), sizeof(snapshot) - 1,
                            "snapshot.xml")
            : fuzzInputFile(zero + 1, static_cast<std::size_t>(end - zero - 1), "snapshot.xml");
    Morvex::writeVisualTrees(point, QString(), other);
    return 0;
}
