#pragma once

#include <QtGlobal>

namespace Morvex {

// A video stream from a child runner to its parent: the length of the name (4 bytes) and the name
// in UTF-8, then chunks of type (4 bytes), value (8 bytes) and, for data, as many bytes as the
// value says. The parent answers with acknowledgements of 8 bytes. All numbers are unsigned and
// big-endian.

enum class VideoChunk : quint32 { Seek = 1, Data = 2 };

const int videoNameLengthSize = 4;
const int videoChunkHeaderSize = 12;
const int videoAcknowledgementSize = 8;

} // namespace Morvex
