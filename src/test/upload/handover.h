#pragma once

// A posted event is handed to the other thread under a lock of Qt, which ThreadSanitizer can't see:
// the first function goes before the post, the second one to where the event arrives.

#if defined(__SANITIZE_THREAD__)

#include <sanitizer/tsan_interface.h>

namespace Morvex {

inline void noteHandOver(void *event)
{
    __tsan_release(event);
}

inline void noteArrival(void *event)
{
    __tsan_acquire(event);
}

} // namespace Morvex

#else

namespace Morvex {

inline void noteHandOver(void *) {}
inline void noteArrival(void *) {}

} // namespace Morvex

#endif
