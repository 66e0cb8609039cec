#include "remote/protocol/message.h"

#include "remote/protocol/wirekinds.h"
#include "remote/protocol/wirereader.h"
#include "remote/protocol/wirewriter.h"

namespace Morvex {
namespace {

bool isKnown(quint8 type)
{
    return (type >= Message::Hello && type <= Message::Recorded) ||
           (type >= Message::Welcome && type <= Message::Release);
}

} // namespace

QByteArray Message::encoded() const
{
    QByteArray bytes;
    WireWriter writer(&bytes);
    writer.number(static_cast<quint8>(type));
    writer.number(static_cast<quint8>(operation));
    writer.number(number);
    writer.list(values);
    return writer.isGood() && bytes.size() <= maxMessageSize ? bytes : QByteArray();
}

bool Message::decode(const QByteArray &bytes, Message *message)
{
    WireReader reader(bytes);
    const auto type = reader.number<quint8>();
    const auto operation = reader.number<quint8>();
    Message decoded;
    decoded.number = reader.number<quint32>();
    decoded.values = reader.list();
    *message = {};
    if (!reader.isGood() || !reader.isAtEnd() || !isKnown(type) || operation > Record)
        return false;
    decoded.type = static_cast<Type>(type);
    decoded.operation = static_cast<Operation>(operation);
    *message = decoded;
    return true;
}

} // namespace Morvex
