#include "qtbackend/textcursorstate.h"

#include "qtbackend/inputmask.h"
#include "qtbackend/sceneaccess.h"

#include <QAbstractSpinBox>
#include <QAbstractTextDocumentLayout>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextEdit>
#include <QTextLayout>

#include <algorithm>
#include <utility>

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
        state = ofField(*line);
        state.findSection(line->parentWidget());
        state.joinAffixes(line->parentWidget());
        state.joinMask(line->inputMask());
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
    state.m_contentEnd = state.m_length;
    state.m_position = cursor.position();
    state.m_anchor = cursor.anchor();
    state.m_document = cursor.document();
    return state;
}

TextCursorState TextCursorState::ofField(const QLineEdit &line)
{
    TextCursorState state;
    state.m_text = line.text();
    state.m_length = state.m_text.size();
    state.m_contentEnd = state.m_length;
    state.m_position = line.cursorPosition();
    state.m_anchor = state.m_position;
    if (line.hasSelectedText())
        state.m_anchor =
            line.selectionStart() == state.m_position ? line.selectionEnd() : line.selectionStart();
    return state;
}

// The cursor jumps over them, and to select all leaves them out.
void TextCursorState::joinAffixes(const QWidget *box)
{
    if (!qobject_cast<const QAbstractSpinBox *>(box))
        return;
    const QString prefix = box->property("prefix").toString();
    const QString suffix = box->property("suffix").toString();
    const int end = m_length - suffix.size();
    if (end < prefix.size() || !m_text.startsWith(prefix) || !m_text.endsWith(suffix))
        return;
    const auto joined = [&](int position) {
        const int afterPrefix = position - qBound(0, position - 1, qMax(0, prefix.size() - 1));
        return afterPrefix - qBound(0, position - end - 1, qMax(0, suffix.size() - 1));
    };
    const auto isStop = [&](int position) {
        return position == 0 || position == m_length ||
               (position >= prefix.size() && position <= end);
    };
    if (!isStop(m_anchor))
        std::swap(m_anchor, m_position);
    // A part of a unit alone can't be selected by keys; what is typed takes its place all the same.
    if (!isStop(m_anchor))
        m_anchor = m_position = m_anchor > end ? end : prefix.size();
    m_selection = {m_text, m_anchor, m_position};
    m_position = joined(m_position);
    m_anchor = joined(m_anchor);
    m_contentStart = joined(prefix.size());
    m_contentEnd = joined(end);
    m_length = joined(m_text.size());
    m_text = prefix.left(1) + m_text.mid(prefix.size(), end - prefix.size()) + suffix.left(1);
}

// Each place at which the cursor stops counts as one.
void TextCursorState::joinMask(const QString &mask)
{
    if (mask.isEmpty())
        return;
    const QVector<int> stops = cursorStops(mask);
    const auto joined = [&stops](int position) {
        const auto *stop = std::lower_bound(stops.begin(), stops.end() - 1, position);
        return static_cast<int>(stop - stops.begin());
    };
    m_position = joined(m_position);
    m_anchor = joined(m_anchor);
    m_length = stops.size() - 1;
    m_contentEnd = m_length;
    m_text = QString(m_length, QLatin1Char('_'));
}

void TextCursorState::findSection(const QWidget *box)
{
    const auto *edit = qobject_cast<const QDateTimeEdit *>(box);
    const int index = edit && edit->sectionCount() > 1 ? edit->currentSectionIndex() : -1;
    if (index < 0)
        return;
    const QString text = edit->sectionText(edit->sectionAt(index));
    const int start = qMin(m_position, m_anchor);
    for (int i = start; !text.isEmpty() && i >= qMax(0, start - text.size()); --i) {
        if (m_text.midRef(i, text.size()) != text)
            continue;
        m_section = index;
        m_sectionStart = i;
        m_sectionLength = text.size();
        return;
    }
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
    state.m_contentEnd = state.m_length;
    state.m_document = access->documentOf(item);
    state.m_isWrapped = item->property("wrapMode").toInt() != 0;
    if (!state.m_document)
        state.m_text = item->property("text").toString();
    return state;
}

bool TextCursorState::isAllSelected() const
{
    return m_anchor != m_position && qMin(m_anchor, m_position) <= m_contentStart &&
           qMax(m_anchor, m_position) >= m_contentEnd;
}

TextCursorState TextCursorState::at(const QWidget *widget, int position)
{
    const QLineEdit *line = fieldOf(widget);
    TextCursorState state = line ? ofField(*line) : of(widget);
    state.m_position = position;
    state.m_anchor = position;
    if (line) {
        state.joinAffixes(line->parentWidget());
        state.joinMask(line->inputMask());
    }
    return state;
}

QString TextCursorState::keys() const
{
    if (isAllSelected())
        return QStringLiteral("<Ctrl+A>");
    if (m_section >= 0)
        return wayInSection();
    const QString shift = QStringLiteral("Shift+");
    if (!m_selection.text.isNull()) {
        TextCursorState whole;
        whole.m_text = m_selection.text;
        return wayTo(m_anchor, QString()) +
               whole.keysBetween(m_selection.anchor, m_selection.position, shift);
    }
    const bool isLong = m_document && stepsBetween(m_anchor, m_position) > maxSteps;
    return wayTo(m_anchor, QString()) +
           (isLong ? wayTo(m_position, shift) : keysBetween(m_anchor, m_position, shift));
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

bool TextCursorState::isRightToLeft(int position) const
{
    return m_document ? m_document->findBlock(position).textDirection() == Qt::RightToLeft
                      : m_text.isRightToLeft();
}

// On the way to the other place, where another paragraph begins; that place when none does.
int TextCursorState::endOfParagraph(int from, int to) const
{
    const QTextBlock block = m_document ? m_document->findBlock(from) : QTextBlock();
    if (!block.isValid())
        return to;
    return from < to ? qMin(to, block.position() + block.length()) : qMax(to, block.position() - 1);
}

// What is next in a text that runs to the left is on the left.
QString TextCursorState::keysBetween(int from, int to, const QString &modifiers) const
{
    const auto keys = [&modifiers](bool isToRight, int steps) {
        return repeated(modifiers + QLatin1String(isToRight ? "Right" : "Left"), steps);
    };
    QString way;
    int steps = 0;
    bool isToRight = true;
    while (from != to) {
        const bool isNextToRight = (from < to) != isRightToLeft(from);
        if (isNextToRight != isToRight)
            way += keys(isToRight, std::exchange(steps, 0));
        isToRight = isNextToRight;
        const int next = endOfParagraph(from, to);
        steps += stepsBetween(from, next);
        from = next;
    }
    return way + keys(isToRight, steps);
}

// From section to section, as keys jump over what is between them. To come to one selects it, with
// the cursor at its end; where a Left without Shift goes then depends on the platform.
QString TextCursorState::wayInSection() const
{
    const QString way =
        QLatin1String("<Home>") + (m_section > 0 ? repeated(QStringLiteral("Ctrl+Right"), m_section)
                                                 : QStringLiteral("<Ctrl+Right><Ctrl+Left>"));
    if (qAbs(m_position - m_anchor) == m_sectionLength)
        return way;
    return way + repeated(QStringLiteral("Shift+Left"), m_sectionLength) +
           repeated(QStringLiteral("Right"), m_anchor - m_sectionStart) +
           keysBetween(m_anchor, m_position, QStringLiteral("Shift+"));
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
           keysBetween(isFromEnd ? m_length : 0, position, modifiers);
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
           repeated(modifiers + QLatin1String("Home"), 1) + keysBetween(start, position, modifiers);
}

} // namespace Morvex
