#include "qtbackend/focusmove.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/textcursorstate.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include <utility>

namespace Morvex {
namespace {

bool isInOneWindow(const QWidget *a, const QWidget *b)
{
    return a && b && a->window() == b->window();
}

bool isTextField(const QWidget *widget)
{
    return qobject_cast<const QLineEdit *>(widget) || qobject_cast<const QTextEdit *>(widget) ||
           qobject_cast<const QPlainTextEdit *>(widget) ||
           qobject_cast<const QAbstractSpinBox *>(widget);
}

} // namespace

void FocusMove::expect(int number)
{
    m_expected.number = number;
    m_expected.from = QApplication::focusWidget();
}

bool FocusMove::enter(const QWidget *target)
{
    const bool isNext = m_last.number > 0 && m_last.number == m_report.lastNumber();
    m_further = {};
    if (isNext)
        m_further = {m_last.number + 1, m_last.from, m_last.origin};
    // To come back to where one was is no move at all without what was between.
    const bool isReplaced = isNext && target != m_last.origin && isInOneWindow(target, m_last.from);
    if (isReplaced)
        m_report.cancel(m_last.number);
    m_last = {};
    return isReplaced;
}

bool FocusMove::takeNew()
{
    return std::exchange(m_isNew, false);
}

void FocusMove::beginPress()
{
    m_press = {};
    m_press.isExpected = true;
    m_press.numberBefore = m_report.lastNumber();
    m_press.from = QApplication::focusWidget();
}

void FocusMove::endPress()
{
    lookAfterPress();
    m_press.isReleased = true;
}

void FocusMove::lookAfterPress()
{
    QWidget *focus = QApplication::focusWidget();
    if (!std::exchange(m_press.isExpected, false) || !isInOneWindow(focus, m_press.from) ||
        focus == m_press.from)
        return;
    m_press.to = focus;
    m_isNew = true;
    if (m_last.number == m_press.numberBefore)
        m_report.cancel(m_last.number);
    m_last = {};
}

// A press that was for nothing else. What opens something when it is clicked is left alone.
void FocusMove::reportPress()
{
    QWidget *field = m_press.to;
    if (!isTextField(field) || m_report.lastNumber() != m_press.numberBefore)
        return;
    const TextCursorState state = TextCursorState::of(field);
    if (state.isInEmptyText() || isSecretInput(field))
        m_report.add(QStringLiteral("click"), field);
    else
        m_report.addCursor(m_report.nameOf(field), field, state.keys());
    m_last.number = m_report.lastNumber();
    m_last.from = m_press.from;
    m_last.origin = m_press.from;
}

void FocusMove::settle()
{
    lookAfterPress();
    if (std::exchange(m_press.isReleased, false))
        reportPress();
    const Move done = std::exchange(m_expected, {});
    if (done.number == 0 || done.from == QApplication::focusWidget())
        return;
    m_last = {done.number, done.from,
              done.number == m_further.number ? m_further.origin : done.from};
    m_isNew = true;
}

} // namespace Morvex
