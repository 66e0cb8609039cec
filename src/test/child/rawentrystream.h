#pragma once

#include "morvex_export.h"
#include "test/testresult.h"

#include <QByteArray>

#include <cstddef>

namespace Morvex {

// The form in which entries travel from a child runner to its parent. Both ends are built from the
// same sources, so that no version is exchanged.

/// The size of the length field before each payload: unsigned, big-endian.
const std::size_t rawLengthSize = 4;

/// Replaces @p datagram by the length field and the payload of @p entry.
MORVEX_EXPORT void encodeEntry(const TestResult::Entry &entry, QByteArray &datagram);

/// The entry of a payload. Where the bytes end early or make no sense, that field and all after it
/// have their defaults; a type that does not exist reads as TestResult::NONE. Takes no more memory
/// than is in proportion to @p size.
MORVEX_EXPORT TestResult::Entry decodeEntry(const char *payload, std::size_t size);

} // namespace Morvex
