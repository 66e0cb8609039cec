#pragma once

#include <QPointer>
#include <QString>
#include <QTextDocument>
#include <QWidget>

namespace Morvex {

/// Where the cursor of a text field or an editor is, and what is selected.
class TextCursorState
{
public:
    TextCursorState() = default;
    /// Of a widget without a text it has nothing.
    static TextCursorState of(const QWidget *widget);
    static TextCursorState ofSceneItem(const QObject *item);

    bool operator==(const TextCursorState &other) const
    {
        return m_position == other.m_position && m_anchor == other.m_anchor;
    }

    /// The keys that bring any state of the text here. The text must not have changed since.
    QString keys() const;

private:
    QString wayTo(int position, const QString &modifiers) const;
    QString wayByLines(int position, const QString &modifiers) const;

    int m_position = 0;
    int m_anchor = 0;
    int m_length = 0;
    // Null for a field of one line.
    QPointer<QTextDocument> m_document;
};

} // namespace Morvex
