#pragma once

#include <QtGlobal>

namespace Morvex {

/// The most that a message may hold: bytes, and elements of lists and maps. Each element takes far
/// more room in memory than in the message.
const int maxMessageSize = 256 * 1024 * 1024;
const quint32 maxWireElements = 2000000;

/// The first byte of a value. The numbers are those of the protocol.
enum class WireKind : quint8 {
    Invalid = 0,
    Boolean = 1,
    /// The number of the type of the toolkit, then 64 bits.
    Integer = 2,
    Double = 3,
    Float = 4,
    Text = 5,
    Bytes = 6,
    TextList = 7,
    List = 8,
    Map = 9,
    Point = 10,
    PointF = 11,
    Size = 12,
    SizeF = 13,
    Rect = 14,
    RectF = 15,
    Color = 16,
    Opaque = 17,
    Object = 18,
};

/// How deep lists and maps may be nested. Deeper ones are opaque.
const int maxWireDepth = 16;

} // namespace Morvex
