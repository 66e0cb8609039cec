#pragma once

#include "morvex_export.h"

#include <QByteArray>
#include <QVariant>

namespace Morvex {

/// Both ends have to be of the same version.
const quint16 protocolVersion = 1;

/// What one end says to the other; docs/application-protocol.md has what each means.
struct MORVEX_EXPORT Message
{
    enum Type : quint8 {
        // From the application.
        Hello = 1,
        Ready = 2,
        Answer = 3,
        Failure = 4,
        Unfinished = 5,
        Pong = 6,
        Bye = 7,
        Recorded = 8,
        // To it.
        Welcome = 16,
        Request = 17,
        Ping = 18,
        Release = 19,
    };

    /// What a request asks for, and its arguments.
    enum Operation : quint8 {
        NoOperation = 0,
        FindObject = 1,
        FindClass = 2,
        GlobalClass = 3,
        ClassInNamespace = 4,
        HasNamespace = 5,
        DescribeClass = 6,
        HasMethod = 7,
        ClassOfObject = 8,
        GetProperty = 9,
        SetProperty = 10,
        InvokeMethod = 11,
        CastObject = 12,
        CallFunction = 13,
        TextOfObject = 14,
        WrapValue = 15,
        SetObjectMap = 16,
        Quit = 17,
        Record = 18,
    };

    Type type = Hello;
    Operation operation = NoOperation;
    /// That of a request comes back with its answer.
    quint32 number = 0;
    QVariantList values;

    /// Null when it is more than a message may hold.
    QByteArray encoded() const;
    /// False when the bytes are no message; it is then empty.
    static bool decode(const QByteArray &bytes, Message *message);
};

} // namespace Morvex
