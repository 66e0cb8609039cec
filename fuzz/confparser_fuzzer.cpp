#include "fuzzinput.h"

#include "shared/confparser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    const QString path = fuzzInputFile(data, size, "suite.conf");
    for (const bool splitValues : {true, false}) {
        const Morvex::ConfParser parser(path, splitValues);
        const Morvex::Config config(parser.entries());
        for (const QString &key : config.globalEntries()) {
            config.boolEntry(key);
            Morvex::ConfParser::splitArgs(config.entry(key));
        }
    }
    return 0;
}
