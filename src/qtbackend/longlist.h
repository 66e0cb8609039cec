#pragma once

#include <QCryptographicHash>
#include <QString>
#include <QStringList>

namespace Morvex {

/// The lines of a property that may have any number of them, which people read in reports. Of the
/// lines that are too many there is a sum instead, by which a change in them is seen; those after
/// the ones that are summed are only counted.
class LongList
{
public:
    /// At least one line is shown.
    explicit LongList(int shownLines, int summedLines = 1000 * 1000);

    /// @p textOf gives the line, when it is needed.
    template <typename TextOf>
    void add(const TextOf &textOf)
    {
        ++m_count;
        if (m_count <= m_shownLines)
            m_lines += textOf();
        else if (m_count <= m_summedLines)
            addToSum(textOf());
    }

    QString text() const;

private:
    void addToSum(const QString &line);

    const int m_shownLines;
    const int m_summedLines;
    int m_count = 0;
    QStringList m_lines;
    QCryptographicHash m_sum{QCryptographicHash::Sha1};
};

} // namespace Morvex
