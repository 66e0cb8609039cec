#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace Morvex {

struct ObjectRef;
enum class WireKind : quint8;

/// Reads what WireWriter has written, or says that it can't be that: every count and length is
/// checked against the bytes that are there before anything is made of it. After the first error
/// all it gives is empty.
class WireReader
{
public:
    explicit WireReader(const QByteArray &bytes)
        : m_bytes(bytes)
    {
    }

    /// Whether all that was asked for was there.
    bool isGood() const { return m_isGood; }
    bool isAtEnd() const { return m_position == m_bytes.size(); }

    /// Lowest byte first.
    template <typename Number>
    Number number()
    {
        quint64 number = 0;
        if (!has(sizeof(Number)))
            return 0;
        for (std::size_t i = 0; i < sizeof(Number); ++i)
            number |= quint64(static_cast<uchar>(m_bytes.at(m_position++))) << (8 * i);
        return static_cast<Number>(number);
    }

    QString text();
    QByteArray bytes();
    QVariant value() { return value(0); }
    QVariantList list() { return list(0); }

private:
    bool has(quint64 size);
    quint32 count(quint64 leastSize);
    quint32 elementCount(quint64 leastSize);
    double real();
    QVariant fail();
    QVariant value(int depth);
    QVariant integer();
    QVariant geometry(WireKind kind);
    QVariantList list(int depth);
    QVariantMap map(int depth);
    QStringList textList();
    QVariant opaque();
    QVariant object(int depth);

    const QByteArray m_bytes;
    int m_position = 0;
    quint32 m_elements = 0;
    bool m_isGood = true;
};

} // namespace Morvex
