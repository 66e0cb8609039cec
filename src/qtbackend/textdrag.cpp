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

QString repeated(const char *key, int count)
{
    return QString::fromLatin1(key).repeated(count);
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
    m_way = TextCursorState::at(target, m_place).keys();
    m_isMove = isMove;
    return true;
}

// After the text was cut, the cursor is where it was.
QString TextDrag::keysWithin(int length) const
{
    const QString way = m_place > m_end ? repeated("<Right>", m_place - m_end)
                                        : repeated("<Left>", m_start - m_place);
    const QString keys =
        (m_isMove ? QLatin1String("<Ctrl+X>") + way : QLatin1String("<Ctrl+C>") + m_way) +
        QLatin1String("<Ctrl+V>");
    // A field selects what was dropped.
    return qobject_cast<QLineEdit *>(m_target) ? keys + repeated("<Shift+Left>", length) : keys;
}

void TextDrag::settle()
{
    if (!m_target)
        return;
    const bool isChanged = textOf(m_target) != m_textBefore;
    const QString text = QStringLiteral("text");
    const QString type = QStringLiteral("type");
    if (isChanged && m_target == m_source) {
        m_report.add(type, m_targetName, {{text, keysWithin(m_end - m_start)}});
    } else if (isChanged) {
        m_report.add(type, m_sourceName,
                     {{text, QLatin1String(m_isMove ? "<Ctrl+X>" : "<Ctrl+C>")}});
        m_report.add(type, m_targetName, {{text, m_way + QLatin1String("<Ctrl+V>")}});
    }
    end();
}

void TextDrag::end()
{
    m_source = nullptr;
    m_target = nullptr;
}

} // namespace Morvex
