#pragma once

#include <QByteArray>
#include <QString>
#include <QVariant>

#include <initializer_list>

namespace Morvex {

struct ObjectRef;
enum class WireKind : quint8;

/// Appends values in the form in which they travel; docs/application-protocol.md describes it.
class WireWriter
{
public:
    explicit WireWriter(QByteArray *bytes)
        : m_bytes(bytes)
    {
    }

    /// Lowest byte first.
    template <typename Number>
    void number(Number number)
    {
        for (std::size_t i = 0; i < sizeof number; ++i)
            m_bytes->append(static_cast<char>(number >> (8 * i)));
    }

    void text(const QString &text);
    void bytes(const QByteArray &bytes);
    /// A value of a type that does not travel is sent as what textOfValue and hasText say of it.
    void value(const QVariant &value) { this->value(value, 0); }
    void list(const QVariantList &values) { list(values, 0); }

    /// False when not all was written, because it is more than a message may hold.
    bool isGood() const { return m_isGood; }

private:
    void value(const QVariant &value, int depth);
    bool integer(const QVariant &value);
    bool plain(const QVariant &value);
    bool nested(const QVariant &value, int depth);
    bool geometry(const QVariant &value);
    bool color(const QVariant &value);
    void opaque(const QVariant &value);
    void kind(WireKind kind);
    void reals(WireKind kind, std::initializer_list<double> numbers);
    void wholes(WireKind kind, std::initializer_list<int> numbers);
    void list(const QVariantList &values, int depth);
    void map(const QVariantMap &values, int depth);
    void real(double number);
    void object(const ObjectRef &object, int depth);
    void texts(const QStringList &texts);
    bool hasRoom(qint64 size);
    void elementCount(int count);

    QByteArray *m_bytes;
    quint32 m_elements = 0;
    bool m_isGood = true;
};

} // namespace Morvex
