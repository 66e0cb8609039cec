#include "qtbackend/textcursorstate.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextEdit>

namespace Morvex {
namespace {

const int maxSteps = 60;

QString repeated(const char *key, int count)
{
    return QString(QLatin1String(key)).repeated(count);
}

} // namespace

TextCursorState TextCursorState::of(const QWidget *widget)
{
    TextCursorState state;
    QTextCursor cursor;
    if (const auto *line = qobject_cast<const QLineEdit *>(widget)) {
        state.m_length = line->text().size();
        state.m_position = line->cursorPosition();
        state.m_anchor = state.m_position;
        if (line->hasSelectedText())
            state.m_anchor = line->selectionStart() == state.m_position ? line->selectionEnd()
                                                                        : line->selectionStart();
        return state;
    }
    if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
        cursor = edit->textCursor();
    else if (const auto *plain = qobject_cast<const QPlainTextEdit *>(widget))
        cursor = plain->textCursor();
    else
        return state;
    QTextCursor end = cursor;
    end.movePosition(QTextCursor::End);
    state.m_length = end.position();
    state.m_position = cursor.position();
    state.m_anchor = cursor.anchor();
    state.m_hasLines = true;
    return state;
}

QString TextCursorState::keys() const
{
    if (m_anchor != m_position && qAbs(m_anchor - m_position) == m_length)
        return QStringLiteral("<Ctrl+A>");
    const char *const home = m_hasLines ? "<Ctrl+Home>" : "<Home>";
    const char *const end = m_hasLines ? "<Ctrl+End>" : "<End>";
    const bool isFromEnd = m_length - m_anchor < m_anchor;
    const int way = isFromEnd ? m_length - m_anchor : m_anchor;
    const int selected = m_position - m_anchor;
    if (way + qAbs(selected) > maxSteps)
        return {};
    return QLatin1String(isFromEnd || m_length == 0 ? end : home) +
           repeated(isFromEnd ? "<Left>" : "<Right>", way) +
           repeated(selected < 0 ? "<Shift+Left>" : "<Shift+Right>", qAbs(selected));
}

} // namespace Morvex
