#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

namespace Morvex {

/// Where the cursor of a text field or an editor is, and what is selected.
class TextCursorState
{
public:
    TextCursorState() = default;
    /// Of a widget without a text it has nothing.
    static TextCursorState of(const QWidget *widget);

    bool operator==(const TextCursorState &other) const
    {
        return m_position == other.m_position && m_anchor == other.m_anchor;
    }

    /// The keys that bring any state of the text here. Empty when these would be too many.
    QString keys() const;

private:
    int m_position = 0;
    int m_anchor = 0;
    int m_length = 0;
    bool m_hasLines = false;
};

} // namespace Morvex
