#include "qtbackend/closeorigin.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <dlfcn.h>
#include <execinfo.h>

namespace Morvex {
namespace {

const int maxFrames = 64;
// From the first to the second of the functions below, with what may be between them.
const int framesBetween = 3;

// Of the toolkit, which exports them: what closes a window, and what takes events that have come
// from outside from their queue.
const char handlerName[] = "_ZN22QGuiApplicationPrivate17processCloseEvent";
const char queueName[] = "_ZN22QWindowSystemInterface22sendWindowSystemEvents";

bool isIn(void *address, const char *function)
{
    Dl_info info = {};
    return ::dladdr(address, &info) && info.dli_sname &&
           std::strncmp(info.dli_sname, function, std::strlen(function)) == 0;
}

} // namespace

bool isClosedByProgram()
{
    std::array<void *, maxFrames> frames = {};
    const auto *end = frames.begin() + ::backtrace(frames.data(), maxFrames);
    const auto *handler =
        std::find_if(frames.cbegin(), end, [](void *frame) { return isIn(frame, handlerName); });
    const auto *after = end - handler > framesBetween ? handler + framesBetween : end;
    return handler != end &&
           std::none_of(handler, after, [](void *frame) { return isIn(frame, queueName); });
}

} // namespace Morvex
