#include "fuzzinput.h"

#include "remote/protocol/message.h"

using namespace Morvex;

// What comes from an application: it is refused, or comes back the same when it is sent on.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, std::size_t size)
{
    Message message;
    if (!Message::decode(QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size)),
                         &message)) {
        require(message.values.isEmpty());
        return 0;
    }
    const QByteArray bytes = message.encoded();
    Message again;
    require(Message::decode(bytes, &again));
    require(again.encoded() == bytes);
    return 0;
}
