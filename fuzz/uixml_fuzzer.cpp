#include "fuzzinput.h"

#include "shared/browserelement.h"

using namespace Morvex;

// The input is read twice: merged with itself, a tree keeps its shape.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    const QString file = fuzzInputFile(data, size, "ui.xml");
    BrowserElement root(nullptr, QStringLiteral("coverage"));
    QString error;
    if (!root.mergeXmlFiles({file}, error)) {
        require(!error.isEmpty());
        return 0;
    }
    const int expected = root.coverageExpected(true);
    require(root.mergeXmlFiles({file}, error));
    require(root.coverageExpected(true) == expected);
    for (const BrowserElement *element : root.children()) {
        element->absoluteGeometry();
        element->displayName();
    }
    return 0;
}
