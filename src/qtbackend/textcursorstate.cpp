#include "qtbackend/textcursorstate.h"

#include "qtbackend/sceneaccess.h"

#include <QAbstractSpinBox>
#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>

namespace Morvex {
namespace {

// From there on lines are counted. Those that are wrapped depend on the width of the window.
const int maxSteps = 60;
const int maxStepsInWrapped = 2000;

QString repeated(const QString &key, int count)
{
    if (count == 0)
        return {};
    return QLatin1Char('<') + key +
           (count > 1 ? QLatin1Char('*') + QString::number(count) : QString()) + QLatin1Char('>');
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

// Those on the screen. To lay out all of a large text takes long.
int linesOf(const QTextDocument &document, const QTextBlock &block, bool isWrapped)
{
    if (!isWrapped)
        return block.isVisible() ? 1 + block.text().count(QChar(QChar::LineSeparator)) : 0;
    layOut(document, block);
    return block.isVisible() ? qMax(1, block.layout()->lineCount()) : 0;
}

// Tables are such.
bool hasFrames(const QTextDocument *document)
{
    return document && !document->rootFrame()->childFrames().isEmpty();
}

// As keys move the cursor. A selection is no measure, as it takes in tables as a whole.
int moves(QTextDocument *document, int start, int end)
{
    QTextCursor cursor(document);
    cursor.setPosition(start);
    int count = 0;
    int before = -1;
    while (cursor.position() < end && cursor.position() > before) {
        before = cursor.position();
        cursor.movePosition(QTextCursor::NextCharacter);
        ++count;
    }
    return count;
}

// In the blocks up to the second.
int linesIn(const QTextDocument &document, QTextBlock block, const QTextBlock &end, bool isWrapped)
{
    int count = 0;
    for (; block != end && block.isValid(); block = block.next())
        count += linesOf(document, block, isWrapped);
    return count;
}

} // namespace

const QLineEdit *fieldOf(const QWidget *widget)
{
    const auto *line = qobject_cast<const QLineEdit *>(widget);
    const bool isAround =
        qobject_cast<const QAbstractSpinBox *>(widget) || qobject_cast<const QComboBox *>(widget);
    return isAround ? widget->findChild<QLineEdit *>(QString(), Qt::FindDirectChildrenOnly) : line;
}

int textPositionAt(QWidget *widget, const QPoint &globalPlace)
{
    if (auto *line = qobject_cast<QLineEdit *>(widget))
        return line->cursorPositionAt(line->mapFromGlobal(globalPlace));
    if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
        return edit->cursorForPosition(edit->viewport()->mapFromGlobal(globalPlace)).position();
    const auto *plain = qobject_cast<const QPlainTextEdit *>(widget);
    return plain
               ? plain->cursorForPosition(plain->viewport()->mapFromGlobal(globalPlace)).position()
               : -1;
}

TextCursorState TextCursorState::of(const QWidget *widget)
{
    TextCursorState state;
    QTextCursor cursor;
    if (const QLineEdit *line = fieldOf(widget)) {
        state.m_text = line->text();
        state.m_length = state.m_text.size();
        state.m_position = line->cursorPosition();
        state.m_anchor = state.m_position;
        if (line->hasSelectedText())
            state.m_anchor = line->selectionStart() == state.m_position ? line->selectionEnd()
                                                                        : line->selectionStart();
        return state;
    }
    if (const auto *edit = qobject_cast<const QTextEdit *>(widget)) {
        cursor = edit->textCursor();
        state.m_isWrapped = edit->lineWrapMode() != QTextEdit::NoWrap;
    } else if (const auto *plain = qobject_cast<const QPlainTextEdit *>(widget)) {
        cursor = plain->textCursor();
        state.m_isWrapped = plain->lineWrapMode() != QPlainTextEdit::NoWrap;
    } else {
        return state;
    }
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
    state.m_isWrapped = item->property("wrapMode").toInt() != 0;
    if (!state.m_document)
        state.m_text = item->property("text").toString();
    return state;
}

bool TextCursorState::isAllSelected() const
{
    return m_anchor != m_position && qAbs(m_anchor - m_position) == m_length;
}

TextCursorState TextCursorState::at(const QWidget *widget, int position)
{
    TextCursorState state = of(widget);
    state.m_position = position;
    state.m_anchor = position;
    return state;
}

QString TextCursorState::keys() const
{
    if (isAllSelected())
        return QStringLiteral("<Ctrl+A>");
    const int selected = stepsBetween(m_anchor, m_position);
    if (m_document && selected > maxSteps)
        return wayTo(m_anchor, QString()) + wayTo(m_position, QStringLiteral("Shift+"));
    return wayTo(m_anchor, QString()) +
           repeated(QLatin1String(m_position < m_anchor ? "Shift+Left" : "Shift+Right"), selected);
}

QString TextCursorState::textSince(const TextCursorState &before) const
{
    const int added = m_length - before.m_length;
    return added > 0 && m_position - before.m_position == added
               ? textBetween(before.m_position, m_position)
               : QString();
}

QString TextCursorState::textBetween(int start, int end) const
{
    if (!m_document)
        return m_text.mid(start, end - start);
    QTextCursor cursor(m_document);
    cursor.setPosition(start);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    return cursor.selectedText();
}

// A character may be made of several that are stored.
int TextCursorState::stepsBetween(int a, int b) const
{
    if (hasFrames(m_document))
        return moves(m_document, qMin(a, b), qMax(a, b));
    const QString text = textBetween(qMin(a, b), qMax(a, b));
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    int steps = 0;
    while (finder.toNextBoundary() >= 0)
        ++steps;
    return steps;
}

// The modifiers are those of all keys.
QString TextCursorState::wayTo(int position, const QString &modifiers) const
{
    const bool isFromEnd = m_length - position < position;
    const int most = m_isWrapped ? maxStepsInWrapped : maxSteps;
    // Of so many, the characters that are made of several don't matter.
    const bool isFar = qMin(position, m_length - position) > 8 * most;
    const int steps = m_document && isFar ? 0 : stepsBetween(position, isFromEnd ? m_length : 0);
    // Cells are beside each other.
    if (m_document && (isFar || (steps > most && !hasFrames(m_document))))
        return wayByLines(position, modifiers);
    const QString jump = m_document ? QStringLiteral("Ctrl+") : QString();
    return repeated(jump + modifiers + QLatin1String(isFromEnd || m_length == 0 ? "End" : "Home"),
                    1) +
           repeated(modifiers + QLatin1String(isFromEnd ? "Left" : "Right"), steps);
}

// The cursor moves straight up and down, and lines need not begin on the left.
QString TextCursorState::wayByLines(int position, const QString &modifiers) const
{
    const QTextBlock block = m_document->findBlock(position);
    const QTextLine line = lineAt(*m_document, position);
    const int number = line.isValid() ? line.lineNumber() : 0;
    const int start = block.position() + (line.isValid() ? line.textStart() : 0);
    const bool isFromEnd = m_length - position < position;
    const int lines = isFromEnd
                          ? linesIn(*m_document, block, m_document->end(), m_isWrapped) - 1 - number
                          : linesIn(*m_document, m_document->begin(), block, m_isWrapped) + number;
    return repeated(QLatin1String("Ctrl+") + modifiers + QLatin1String(isFromEnd ? "End" : "Home"),
                    1) +
           repeated(modifiers + QLatin1String(isFromEnd ? "Up" : "Down"), lines) +
           repeated(modifiers + QLatin1String("Home"), 1) +
           repeated(modifiers + QLatin1String("Right"), stepsBetween(start, position));
}

} // namespace Morvex
