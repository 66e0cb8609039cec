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
    // The input as a text, which a store can hold without zeros and lone surrogates.
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(bytes), int(size)).remove(QChar::Null);
    store.writeEntry(QStringLiteral("written"), QStringLiteral("text"), text);
    store.writeEntry(QStringLiteral("written"), QStringLiteral("list"),
                     QStringList{text, {}, text});
    require(store.flush());
    const Settings again(path);
    require(again.readEntry("written", "text", "default") == text);
    require(again.readListEntry("written", "list", {}) == QStringList({text, {}, text}));
    require(again.groupList() == store.groupList());
    for (const QString &key : store.entryList(group, QString())) {
        require(again.readListEntry(group, key, {"default"}) ==
                store.readListEntry(group, key, {"default"}));
    }
    return 0;
}
