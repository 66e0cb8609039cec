#include "fuzzinput.h"

#include "shared/browserelement.h"

using namespace Morvex;

namespace {

// Counts that are kept for each element, after a walk that keeps none.
void requireCounts(const BrowserElement &element)
{
    int expected = element.coverageExpected(false);
    int actual = element.coverageActual(false);
    for (const BrowserElement *child : element.children()) {
        requireCounts(*child);
        expected += child->coverageExpected(true);
        actual += child->coverageActual(true);
        child->absoluteGeometry();
        child->displayName();
    }
    require(element.coverageExpected(true) == expected);
    require(element.coverageActual(true) == actual);
    require(actual <= expected);
}

} // namespace

// The input is read twice: merged with itself, a tree loses nothing. It may grow, since alike
// siblings of one file become one when they meet the file again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    const QString file = fuzzInputFile(data, size, "ui.xml");
    BrowserElement root(nullptr, QStringLiteral("coverage"));
    QString error;
    if (!root.mergeXmlFiles({file}, error)) {
        require(!error.isEmpty());
        return 0;
    }
    requireCounts(root);
    const int expected = root.coverageExpected(true);
    const int actual = root.coverageActual(true);
    require(root.mergeXmlFiles({file}, error));
    requireCounts(root);
    require(root.coverageExpected(true) >= expected);
    require(root.coverageActual(true) >= actual);
    return 0;
}
