#include "shared/expandreferences.h"

namespace Morvex {
namespace {

// Far beyond what a person writes, and small enough that a file of nothing but references costs
// little time and memory.
const int maxReferences = 1000;
const int maxExpandedLength = 64 * 1024;

using Lookup = std::function<QString(const QString &)>;

// What is behind the walk is in m_done and is not looked at again; what is before it, replacements
// included, is m_rest from m_position on.
class Expansion
{
public:
    Expansion(const QString &text, const Lookup &lookup, DollarPair dollarPair)
        : m_rest(text)
        , m_lookup(lookup)
        , m_dollarPair(dollarPair)
        , m_maxLength(qMax(maxExpandedLength, text.size()))
    {
    }

    // False for an expansion that has to be given up.
    bool run()
    {
        for (;;) {
            const int dollar = m_rest.indexOf(QLatin1Char('$'), m_position);
            if (dollar < 0)
                break;
            take(dollar - m_position);
            if (!step())
                return false;
        }
        take(m_rest.size() - m_position);
        return true;
    }

    const QString &text() const { return m_done; }

private:
    void take(int length)
    {
        length = qMin(length, m_rest.size() - m_position);
        m_done.append(m_rest.constData() + m_position, length);
        m_position += length;
    }

    bool at(int index, char character) const
    {
        return index < m_rest.size() && m_rest.at(index) == QLatin1Char(character);
    }

    bool step()
    {
        if (m_dollarPair == DollarPair::IsOneDollar && at(m_position + 1, '$')) {
            take(1);
            ++m_position;
            return true;
        }
        if (at(m_position + 1, '('))
            return expandReference();
        take(1);
        return true;
    }

    bool expandReference()
    {
        const int nameStart = m_position + 2;
        const int nameEnd = m_hasBracket ? m_rest.indexOf(QLatin1Char(')'), nameStart) : -1;
        m_hasBracket = nameEnd >= 0;
        if (m_hasBracket) {
            if (++m_references > maxReferences)
                return false;
            const QString replacement = m_lookup(m_rest.mid(nameStart, nameEnd - nameStart));
            if (!replacement.isEmpty()) {
                m_rest = replacement + m_rest.mid(nameEnd + 1);
                m_position = 0;
            }
        }
        // The walk steps over as much as "$(" takes, also in a replacement.
        take(2);
        return m_done.size() + m_rest.size() - m_position <= m_maxLength;
    }

    QString m_done;
    QString m_rest;
    const Lookup &m_lookup;
    const DollarPair m_dollarPair;
    const int m_maxLength;
    int m_position = 0;
    int m_references = 0;
    // Whether a ")" may lie ahead. Without one nothing is replaced any more, so none can come.
    bool m_hasBracket = true;
};

} // namespace

void expandReferences(QString &text, const Lookup &lookup, DollarPair dollarPair)
{
    Expansion expansion(text, lookup, dollarPair);
    if (expansion.run())
        text = expansion.text();
}

} // namespace Morvex
