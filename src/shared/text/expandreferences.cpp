#include "shared/text/expandreferences.h"

#include <algorithm>

namespace Morvex {
namespace {

// Longer names are not looked up: each of many references that are never closed but by one bracket
// at the end of a long text has nearly all of it for its name.
const int maxNameLength = 4096;

using Lookup = std::function<QString(const QString &)>;

// What the walk has passed is in m_done and is not looked at again; what is ahead of it,
// replacements included, is m_rest from m_position on.
class Expansion
{
public:
    Expansion(const QString &text, const Lookup &lookup, DollarPair dollarPair, qint64 maxGrowth)
        : m_rest(text)
        , m_lookup(lookup)
        , m_dollarPair(dollarPair)
        , m_maxGrowth(maxGrowth)
    {
    }

    // False for an expansion that has to be abandoned.
    bool run()
    {
        while (m_growth <= m_maxGrowth) {
            const int dollar = m_rest.indexOf(QLatin1Char('$'), m_position);
            if (dollar < 0) {
                take(m_rest.size() - m_position);
                return true;
            }
            take(dollar - m_position);
            step();
        }
        return false;
    }

    const QString &text() const { return m_done; }
    qint64 growth() const { return m_growth; }

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

    void step()
    {
        if (m_dollarPair == DollarPair::IsOneDollar && at(m_position + 1, '$')) {
            take(1);
            ++m_position;
        } else if (at(m_position + 1, '(')) {
            replaceReference();
            // The walk steps over as much as "$(" takes, also in a replacement.
            take(2);
        } else {
            take(1);
        }
    }

    void replaceReference()
    {
        const int nameStart = m_position + 2;
        const int nameLength = nextBracket(nameStart) - nameStart;
        if (nameLength < 0 || nameLength > maxNameLength)
            return;
        const QString replacement = m_lookup(m_rest.mid(nameStart, nameLength));
        if (replacement.isEmpty())
            return;
        m_position = nameStart + nameLength + 1;
        putBeforeRest(replacement);
        m_growth += replacement.size();
    }

    // The place of the first ")" from a position on, -1 for none.
    int nextBracket(int position)
    {
        if (m_bracket >= 0 && m_bracket < position)
            m_bracket = m_rest.indexOf(QLatin1Char(')'), position);
        return m_bracket;
    }

    // Overwrites what the walk has passed. Where that is too short it makes room for many
    // replacements, so that the rest is not moved for each one.
    void putBeforeRest(const QString &replacement)
    {
        if (m_position < replacement.size()) {
            const int room = replacement.size() + m_rest.size();
            m_rest.insert(0, QString(room, QLatin1Char(' ')));
            m_position += room;
        }
        m_position -= replacement.size();
        std::copy(replacement.begin(), replacement.end(), m_rest.begin() + m_position);
        m_bracket = m_rest.indexOf(QLatin1Char(')'), m_position);
    }

    QString m_done;
    QString m_rest;
    const Lookup &m_lookup;
    const DollarPair m_dollarPair;
    const qint64 m_maxGrowth;
    qint64 m_growth = 0;
    int m_position = 0;
    int m_bracket = 0;
};

} // namespace

qint64 expandReferences(QString &text, const Lookup &lookup, DollarPair dollarPair,
                        qint64 maxGrowth)
{
    Expansion expansion(text, lookup, dollarPair, qMin(maxGrowth, maxExpansionGrowth));
    if (expansion.run())
        text = expansion.text();
    return expansion.growth();
}

} // namespace Morvex
