#include "fuzzinput.h"

#include "qtbackend/elementfilter.h"

using namespace Morvex;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    ElementFilter filter;
    const QString error =
        filter.add(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)));
    require(error.isEmpty() || error.startsWith(QLatin1String("line ")));
    filter.rulesFor({QStringLiteral("QLabel"), QStringLiteral("QWidget")},
                    {QStringLiteral("text")});
    return 0;
}
