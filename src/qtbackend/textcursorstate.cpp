#include "qtbackend/textcursorstate.h"

#include "qtbackend/sceneaccess.h"

#include <QAbstractTextDocumentLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>

namespace Morvex {
namespace {

// From there on lines are counted.
const int maxSteps = 60;

QString repeated(const QString &key, int count)
{
    return QString(QLatin1Char('<') + key + QLatin1Char('>')).repeated(count);
}

// Some editors compute the layout of a block only when it is asked for.
void layOut(const QTextDocument &document, const QTextBlock &block)
{
    document.documentLayout()->blockBoundingRect(block);
}

QTextLine lineAt(const QTextDocument &document, int position)
{
    const QTextBlock block = document.findBlock(position);
    layOut(document, block);
    return block.layout()->lineForTextPosition(position - block.position());
}

// Those on the screen, in the blocks up to the second.
int linesIn(const QTextDocument &document, QTextBlock block, const QTextBlock &end)
{
    int count = 0;
    for (; block != end && block.isValid(); block = block.next()) {
        layOut(document, block);
        if (block.isVisible())
            count += qMax(1, block.layout()->lineCount());
    }
    return count;
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
    state.m_document = cursor.document();
    return state;
}

TextCursorState TextCursorState::ofSceneItem(const QObject *item)
{
    TextCursorState state;
    const SceneAccess *access = SceneAccess::self();
    if (!access || !item)
        return state;
    const int start = item->property("selectionStart").toInt();
    const int end = item->property("selectionEnd").toInt();
    state.m_position = item->property("cursorPosition").toInt();
    state.m_anchor = start == state.m_position ? end : start;
    state.m_length = item->property("length").toInt();
    state.m_document = access->documentOf(item);
    return state;
}

QString TextCursorState::keys() const
{
    if (m_anchor != m_position && qAbs(m_anchor - m_position) == m_length)
        return QStringLiteral("<Ctrl+A>");
    const int selected = m_position - m_anchor;
    if (m_document && qAbs(selected) > maxSteps)
        return wayTo(m_anchor, QString()) + wayTo(m_position, QStringLiteral("Shift+"));
    return wayTo(m_anchor, QString()) +
           repeated(QLatin1String(selected < 0 ? "Shift+Left" : "Shift+Right"), qAbs(selected));
}

// The modifiers are those of all keys.
QString TextCursorState::wayTo(int position, const QString &modifiers) const
{
    const bool isFromEnd = m_length - position < position;
    const int steps = isFromEnd ? m_length - position : position;
    if (m_document && steps > maxSteps)
        return wayByLines(position, modifiers);
    const QString jump = m_document ? QStringLiteral("Ctrl+") : QString();
    return repeated(jump + modifiers + QLatin1String(isFromEnd || m_length == 0 ? "End" : "Home"),
                    1) +
           repeated(modifiers + QLatin1String(isFromEnd ? "Left" : "Right"), steps);
}

QString TextCursorState::wayByLines(int position, const QString &modifiers) const
{
    const QTextBlock block = m_document->findBlock(position);
    const QTextLine line = lineAt(*m_document, position);
    const int number = line.isValid() ? line.lineNumber() : 0;
    const int column = position - block.position() - (line.isValid() ? line.textStart() : 0);
    const int before = linesIn(*m_document, m_document->begin(), block) + number;
    const int after = linesIn(*m_document, block, m_document->end()) - 1 - number;
    const QString right = repeated(modifiers + QLatin1String("Right"), column);
    const QString home = QLatin1String("Ctrl+") + modifiers + QLatin1String("Home");
    const QString end = QLatin1String("Ctrl+") + modifiers + QLatin1String("End");
    return before <= after
               ? repeated(home, 1) + repeated(modifiers + QLatin1String("Down"), before) + right
               : repeated(end, 1) + repeated(modifiers + QLatin1String("Up"), after) +
                     repeated(modifiers + QLatin1String("Home"), 1) + right;
}

} // namespace Morvex
