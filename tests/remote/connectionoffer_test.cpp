#include "remote/connectionoffer.h"
#include "remote/protocol/message.h"
#include "remote/protocol/messagechannel.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <sys/socket.h>
#include <sys/un.h>

using namespace Morvex;

TEST(ConnectionOfferTest, OnlyAnAgentWithTheTokenAndOfTheVersionIsTaken)
{
    const QTemporaryDir dir("/tmp/t-XXXXXX");
    ConnectionOffer offer(dir.path() + "/s");
    ASSERT_EQ(offer.listen(), QString());
    const QByteArray token = offer.token();
    const struct
    {
        QByteArray token;
        quint16 version;
        Message::Type type;
        bool isTaken;
        bool isOther;
        // One that says nothing keeps nobody waiting.
    } rows[] = {{token, 0, Message::Hello, false, false},
                {token, protocolVersion, Message::Hello, true, false},
                {token.left(token.size() - 1), protocolVersion, Message::Hello, false, false},
                {QByteArray(), protocolVersion, Message::Hello, false, false},
                {token, protocolVersion, Message::Ready, false, false},
                {token, protocolVersion + 1, Message::Hello, false, true}};
    std::deque<MessageChannel> agents;
    for (const auto &row : rows) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        const QByteArray path = offer.socketPath().toLocal8Bit();
        std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
        const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
        MessageChannel &agent = agents.emplace_back(descriptor);
        ASSERT_EQ(::connect(descriptor, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        Message hello;
        hello.type = row.type;
        hello.number = row.version;
        hello.values = {row.token};
        if (row.version != 0) {
            ASSERT_TRUE(agent.send(hello, 60000));
        }
        const ConnectionOffer::Caller caller =
            offer.waitForCaller(row.isTaken || row.isOther ? 60000 : 1000);
        EXPECT_EQ(caller.channel != nullptr, row.isTaken);
        EXPECT_EQ(caller.error.contains("another version"), row.isOther);
    }
}
