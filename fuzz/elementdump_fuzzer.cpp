#include "fuzzinput.h"

#include "shared/browserelement.h"
#include "shared/requestdumpobject.h"
#include "shared/uiabstraction/uielement.h"

using namespace Morvex;
using UIAbstraction::UIElement;

namespace {

// What was read is written and read again.
QByteArray writtenAgain(const QByteArray &dump)
{
    const QList<UIElement *> elements = UIElement::elementsFromByteArray(dump);
    const QByteArray bytes = UIElement::toByteArray(elements);
    qDeleteAll(elements);
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<int>(size));
    const QByteArray dump = writtenAgain(input);
    require(writtenAgain(dump) == dump);
    QString error;
    const QByteArray xml = convertDumpToXml(dump, &error);
    require(error.isEmpty());
    BrowserElement root(nullptr, QStringLiteral("live"));
    require(BrowserElement::readXML(&root, xml, &error));
    return 0;
}
