#include "fuzzinput.h"
#include "shared/settings.h"

using namespace Morvex;

// Whatever is in the file: what the store holds is what a second one reads from the file that the
// first has written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *bytes, std::size_t size)
{
    const QString path = fuzzInputFile(bytes, size, "settings.ini");
    Settings store(path);
    const QString group = store.groupList().value(0);
    for (const QString &key : store.entryList(group, QString())) {
        store.readEntry(group, key, QString());
        store.readListEntry(group, key, {});
        store.readNumEntry(group, key, 0);
        store.readDoubleEntry(group, key, 0);
        store.readBoolEntry(group, key, false);
        store.subkeyList(group, key);
    }
    require(store.flush());
    const Settings again(path);
    require(again.groupList() == store.groupList());
    for (const QString &key : store.entryList(group, QString())) {
        require(again.readListEntry(group, key, {"default"}) ==
                store.readListEntry(group, key, {"default"}));
    }
    return 0;
}
