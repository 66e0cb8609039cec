#include "objectmodel/value/opaquevalue.h"
#include "remote/protocol/message.h"
#include "remote/protocol/objectref.h"

#include <QColor>
#include <QKeySequence>
#include <QModelIndex>
#include <QPoint>
#include <QRect>
#include <QSize>
#include <QVariant>

#include <gtest/gtest.h>

using namespace Morvex;

namespace {

Message messageOf(const QVariantList &values)
{
    Message message;
    message.type = Message::Request;
    message.operation = Message::CallFunction;
    message.number = 0x12345678;
    message.values = values;
    return message;
}

QVariantList oneOfEachKind()
{
    return {QVariant(),
            true,
            -5,
            5u,
            qint64(-5000000000),
            ~quint64(0),
            QVariant::fromValue(short(-3)),
            QVariant::fromValue(uchar(200)),
            QVariant::fromValue(char(65)),
            QVariant::fromValue(long(-7)),
            0.1,
            0.1f,
            QString::fromUtf8("a\xc3\xa4\xf0\x9f\x99\x82") + QChar(0xd800) + QChar(0),
            QByteArray("a\0b", 3),
            QStringList{"a", ""},
            QVariantList{1, QVariantList{"x"}},
            QVariantMap{{"k", 1}, {"", QVariantMap{{"m", 2.5}}}},
            QPoint(-1, INT_MAX),
            QPointF(0.5, -1e300),
            QSize(INT_MAX, -1),
            QSizeF(1, 0.25),
            QRect(QPoint(INT_MIN, INT_MIN), QPoint(INT_MAX, INT_MAX)),
            QRectF(1, 2, 3.5, 4),
            QColor(1, 2, 3, 4)};
}

} // namespace

TEST(WireValuesTest, ValuesComeBackAsTheyWereAndOfTheirTypes)
{
    const Message sent = messageOf(oneOfEachKind());
    Message message;
    ASSERT_TRUE(Message::decode(sent.encoded(), &message));
    EXPECT_EQ(message.type, sent.type);
    EXPECT_EQ(message.operation, sent.operation);
    EXPECT_EQ(message.number, sent.number);
    ASSERT_EQ(message.values.size(), sent.values.size());
    for (int i = 0; i < sent.values.size(); ++i) {
        EXPECT_EQ(message.values[i].userType(), sent.values[i].userType()) << i;
        EXPECT_EQ(message.values[i], sent.values[i]) << i;
    }
}

TEST(WireValuesTest, OtherTypesComeAsTheirTexts)
{
    QVariant deep = 1;
    for (int i = 0; i < 40; ++i)
        deep = QVariantList{deep};
    Message message;
    ASSERT_TRUE(Message::decode(
        messageOf({QKeySequence("Ctrl+A"), QVariant::fromValue(QModelIndex()), deep}).encoded(),
        &message));
    const OpaqueValue *keys = opaqueValueOf(message.values[0]);
    ASSERT_NE(keys, nullptr);
    EXPECT_EQ(keys->typeName, "QKeySequence");
    EXPECT_EQ(keys->text, "Ctrl+A");
    EXPECT_TRUE(keys->hasText);
    ASSERT_NE(opaqueValueOf(message.values[1]), nullptr);
    EXPECT_FALSE(opaqueValueOf(message.values[1])->hasText);
    // It travels on as what it is.
    Message again;
    ASSERT_TRUE(Message::decode(messageOf(message.values).encoded(), &again));
    EXPECT_EQ(opaqueValueOf(again.values[0])->text, "Ctrl+A");
}

TEST(WireValuesTest, WhatIsCutOffOrTooLongIsNoMessage)
{
    ObjectRef ref;
    ref.kind = ObjectRef::Held;
    ref.text = "text";
    const QByteArray whole =
        messageOf(oneOfEachKind() + QVariantList{QVariant::fromValue(ref)}).encoded();
    Message message;
    ASSERT_TRUE(Message::decode(whole, &message));
    for (int size = 0; size < whole.size(); ++size)
        EXPECT_FALSE(Message::decode(whole.left(size), &message)) << size;
    EXPECT_FALSE(Message::decode(whole + '\0', &message));
}

TEST(WireValuesTest, FalseCountsMakeNothing)
{
    const QByteArray header("\x11\x0d\x01\x00\x00\x00", 6);
    const QByteArray one("\x01\x00\x00\x00", 4);
    const QByteArray huge("\xff\xff\xff\xff", 4);
    const struct
    {
        const char *what;
        QByteArray values;
    } rows[] = {
        {"values", huge},
        {"text", one + '\x05' + huge},
        {"bytes", one + '\x06' + huge},
        {"texts", one + '\x07' + huge},
        {"list", one + '\x08' + huge},
        {"map", one + '\x09' + huge},
        {"a list that takes more room than its message",
         QByteArray("\xa0\x86\x98\x00", 4) + QByteArray(10000000, '\0')},
        {"whole number of a type that is none",
         one + '\x02' + char(QMetaType::QPixmap) + QByteArray(8, '\0')},
        {"kind", one + '\x7f'},
        {"nesting", one + QByteArray("\x08\x01\x00\x00\x00", 5).repeated(100000) + '\0'},
        {"object", one + '\x12' + '\x09' + QByteArray(30, '\0')},
    };
    for (const auto &row : rows) {
        Message message;
        EXPECT_FALSE(Message::decode(header + row.values, &message)) << row.what;
        EXPECT_TRUE(message.values.isEmpty()) << row.what;
    }
    Message message;
    EXPECT_FALSE(
        Message::decode(QByteArray("\x63\x0d", 2) + header.mid(2) + QByteArray(4, '\0'), &message));
}
