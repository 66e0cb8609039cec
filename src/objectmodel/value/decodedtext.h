#pragma once

#include <QByteArray>
#include <QString>

namespace Morvex {

/// All of the text. QString::fromUtf8() of an array ends at a zero byte without a word.
inline QString decodedUtf8(const QByteArray &bytes)
{
    return QString::fromUtf8(bytes.constData(), bytes.size());
}

/// As decodedUtf8(), for what programs print.
inline QString decodedLocal8Bit(const QByteArray &bytes)
{
    return QString::fromLocal8Bit(bytes.constData(), bytes.size());
}

} // namespace Morvex
