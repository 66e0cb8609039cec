#pragma once

#include <QPointer>
#include <QString>
#include <QTextDocument>
#include <QWidget>

class QLineEdit;

namespace Morvex {

/// The field of one line that the widget is, or that a spin box or a combo box has; null for none.
const QLineEdit *fieldOf(const QWidget *widget);

/// That of the character at the place in a field or an editor; negative in any other widget.
int textPositionAt(QWidget *widget, const QPoint &globalPlace);

/// Where the cursor of a text field or an editor is, and what is selected.
class TextCursorState
{
public:
    TextCursorState() = default;
    /// Of a widget without a text it has nothing. Spin boxes and combo boxes have that of their
    /// fields.
    static TextCursorState of(const QWidget *widget);
    /// With the cursor somewhere else, and nothing selected.
    static TextCursorState at(const QWidget *widget, int position);
    static TextCursorState ofSceneItem(const QObject *item);

    bool operator==(const TextCursorState &other) const
    {
        return m_position == other.m_position && m_anchor == other.m_anchor &&
               m_selection.anchor == other.m_selection.anchor &&
               m_selection.position == other.m_selection.position;
    }

    bool isInEmptyText() const { return m_length == 0; }
    bool isAllSelected() const;
    /// Whether it is a date of which another section than the first is the current one.
    bool isInLaterSection() const { return m_section > 0; }

    /// What was inserted since where the cursor of @p before is; this one is after it. Empty when
    /// anything else has changed.
    QString textSince(const TextCursorState &before) const;

    /// The keys that bring any state of the text here. The text must not have changed since.
    QString keys() const;
    /// The keys that bring a cursor from one place of the text to another; all with the modifiers,
    /// such as "Shift+".
    QString keysBetween(int from, int to, const QString &modifiers = {}) const;

private:
    static TextCursorState ofField(const QLineEdit &line);
    void joinAffixes(const QWidget *box);
    void joinMask(const QString &mask);
    void findSection(const QWidget *box);
    bool isRightToLeft(int position) const;
    int endOfParagraph(int from, int to) const;
    QString wayInSection() const;
    QString textBetween(int start, int end) const;
    int stepsBetween(int a, int b) const;
    QString wayTo(int position, const QString &modifiers) const;
    QString wayByLines(int position, const QString &modifiers) const;

    // With Shift the cursor goes through the prefix and the suffix of a spin box.
    struct Selection
    {
        QString text;
        int anchor = 0;
        int position = 0;
    };

    int m_position = 0;
    int m_anchor = 0;
    int m_length = 0;
    // Without what a spin box shows around its value.
    int m_contentStart = 0;
    int m_contentEnd = 0;
    // Of a spin box.
    Selection m_selection;
    // Of a date; negative for none.
    int m_section = -1;
    int m_sectionStart = 0;
    int m_sectionLength = 0;
    // Of a field of one line.
    QString m_text;
    // Null for a field of one line.
    QPointer<QTextDocument> m_document;
    bool m_isWrapped = false;
};

} // namespace Morvex
