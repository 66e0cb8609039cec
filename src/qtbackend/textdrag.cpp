#include "qtbackend/textdrag.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/recordedtarget.h"
#include "qtbackend/textcursorstate.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QTextEdit>

namespace Morvex {
namespace {

QString textOf(const QWidget *widget)
{
    if (const auto *line = qobject_cast<const QLineEdit *>(widget))
        return line->text();
    if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
        return edit->toPlainText();
    const auto *plain = qobject_cast<const QPlainTextEdit *>(widget);
    return plain ? plain->toPlainText() : QString();
}

QTextCursor cursorOf(const QWidget *widget)
{
    if (const auto *edit = qobject_cast<const QTextEdit *>(widget))
        return edit->textCursor();
    const auto *plain = qobject_cast<const QPlainTextEdit *>(widget);
    return plain ? plain->textCursor() : QTextCursor();
}

} // namespace

void TextDrag::begin(QWidget *source)
{
    if (!source || m_source == source)
        return;
    const auto *line = qobject_cast<const QLineEdit *>(source);
    const QTextCursor cursor = cursorOf(source);
    m_start = line ? line->selectionStart() : cursor.selectionStart();
    m_end = line ? line->selectionEnd() : cursor.selectionEnd();
    if (m_end <= m_start || isSecretInput(source))
        return;
    m_source = source;
    m_cursorBefore = TextCursorState::of(source);
    m_sourceName = m_report.nameOf(ownerOf(source));
}

bool TextDrag::drop(QWidget *target, const QPoint &globalPlace, bool isMove)
{
    m_place = textPositionAt(target, globalPlace);
    if (!m_source || m_place < 0 || isSecretInput(target))
        return false;
    m_target = target;
    m_targetName = m_report.nameOf(ownerOf(target));
    m_textBefore = textOf(target);
    m_isMove = isMove;
    const TextCursorState place = TextCursorState::at(target, m_place);
    m_way = place.keys();
    if (target != m_source)
        return true;
    m_wayWithin = place.keysBetween(m_place > m_end ? m_end : m_start, m_place);
    // A field selects what was dropped.
    m_selection = qobject_cast<QLineEdit *>(target)
                      ? place.keysBetween(m_end, m_start, QStringLiteral("Shift+"))
                      : QString();
    return true;
}

// After the text was cut, the cursor is where it was.
QString TextDrag::keysWithin() const
{
    return (m_isMove ? QLatin1String("<Ctrl+X>") + m_wayWithin
                     : QLatin1String("<Ctrl+C>") + m_way) +
           QLatin1String("<Ctrl+V>") + m_selection;
}

void TextDrag::settle()
{
    if (!m_target)
        return;
    const bool isChanged = textOf(m_target) != m_textBefore;
    const QString text = QStringLiteral("text");
    const QString type = QStringLiteral("type");
    if (isChanged && m_target == m_source) {
        m_report.add(type, m_targetName, {{text, keysWithin()}});
    } else if (isChanged) {
        m_report.add(type, m_sourceName,
                     {{text, QLatin1String(m_isMove ? "<Ctrl+X>" : "<Ctrl+C>")}});
        m_report.add(type, m_targetName, {{text, m_way + QLatin1String("<Ctrl+V>")}});
    } else if (m_source && !(TextCursorState::of(m_source) == m_cursorBefore)) {
        m_report.addCursor(m_sourceName, ownerOf(m_source), TextCursorState::of(m_source).keys());
    }
    end();
}

void TextDrag::end()
{
    m_source = nullptr;
    m_target = nullptr;
}

} // namespace Morvex
