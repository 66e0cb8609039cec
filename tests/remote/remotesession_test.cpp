#include "remote/protocol/message.h"
#include "remote/protocol/messagechannel.h"
#include "remote/remotesession.h"

#include <gtest/gtest.h>

#include <functional>
#include <sys/socket.h>
#include <unistd.h>

using namespace Morvex;

TEST(RemoteSessionTest, ADishonestPeerEndsTheConnectionAndNothingGrows)
{
    const auto messageOf = [](Message::Type type, const QVariantList &values) {
        Message message;
        message.type = type;
        message.values = values;
        return message;
    };
    const struct
    {
        const char *what;
        std::function<void(int)> talk;
    } rows[] = {
        {"a length of 4 GB", [](int peer) { ::send(peer, "\xff\xff\xff\xff", 4, MSG_NOSIGNAL); }},
        {"no message", [](int peer) { ::send(peer, "\x02\0\0\0ab", 6, MSG_NOSIGNAL); }},
        {"a message of the other side",
         [&messageOf](int peer) {
             MessageChannel(::dup(peer)).send(messageOf(Message::Request, {}), 99);
         }},
        {"hello again",
         [&messageOf](int peer) {
             MessageChannel(::dup(peer)).send(messageOf(Message::Hello, {}), 99);
         }},
        {"answers and signs of life without end",
         [&messageOf](int peer) {
             for (const auto type : {Message::Answer, Message::Pong, Message::Unfinished})
                 MessageChannel(::dup(peer)).send(messageOf(type, {}), 99);
         }},
        {"three farewells",
         [&messageOf](int peer) {
             for (int i = 0; i < 3; ++i)
                 MessageChannel(::dup(peer)).send(messageOf(Message::Bye, {}), 99);
         }},
    };
    for (const auto &row : rows) {
        int ends[2];
        ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        RemoteSession session(std::make_unique<MessageChannel>(ends[0]),
                              [](bool) { return QStringLiteral("closed"); });
        row.talk(ends[1]);
        session.update();
        EXPECT_EQ(session.request(Message::GlobalClass, {}).error,
                  "the application has sent something that is not an answer; the connection to it "
                  "is closed")
            << row.what;
        EXPECT_EQ(session.request(Message::GlobalClass, {}).error, session.failure());
        ::close(ends[1]);
    }
}

TEST(RemoteSessionTest, AnAnswerIsWaitedForToTheBoundOrTheDeadline)
{
    const struct
    {
        QByteArray sent;
        int bound;
        int deadline;
        const char *error;
    } rows[] = {
        {"", 100, 100000, "the application has not answered for 0.1 seconds: silent"},
        {"", 60000, 6000, "the application has not answered for 4."},
        // More than the socket takes.
        {QByteArray(50000000, 'x'), 100, 100000,
         "the application has not answered for 0.1 seconds: silent; the connection to it is "
         "closed"},
    };
    for (const auto &row : rows) {
        int ends[2];
        ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends), 0);
        RemoteSession session(
            std::make_unique<MessageChannel>(ends[0]), [](bool) { return "ended"; },
            [](bool) { return ": silent"; });
        session.setBound(row.bound);
        session.setDeadline(QDeadlineTimer(row.deadline));
        const QString error = session.request(Message::WrapValue, {row.sent}).error;
        EXPECT_TRUE(error.startsWith(row.error)) << error.toStdString();
        ::close(ends[1]);
    }
}
