#include "qtbackend/secrettyping.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/textcursorstate.h"

#include <QKeyEvent>
#include <QLineEdit>

#include <utility>

namespace Morvex {
namespace {

QString contentOf(const QWidget *field)
{
    const QLineEdit *line = fieldOf(field);
    return line ? line->text() : QString();
}

} // namespace

bool SecretTyping::mayShow(QWidget *field, const QKeyEvent &event)
{
    const SecretKey kind = secretKeyOf(event);
    if (kind == SecretKey::Shown)
        return true;
    begin(field, kind != SecretKey::Deleting);
    m_heldBack = kind == SecretKey::Text ? QString() : typedKeyOf(event);
    const bool isEdit =
        kind == SecretKey::Text || kind == SecretKey::Inserting || kind == SecretKey::Deleting;
    if (isEdit && m_number == 0)
        report(false);
    return false;
}

void SecretTyping::addText(QWidget *field)
{
    begin(field, true);
    if (m_number == 0)
        report(false);
}

// Goes on with the action before when that was the last one.
void SecretTyping::begin(QWidget *field, bool isInsertion)
{
    const bool isContinued = field == m_field && m_number > 0 && m_number == m_report.lastNumber();
    m_field = field;
    m_before = contentOf(field);
    if (!isContinued) {
        m_number = 0;
        m_hasChanged = false;
        m_first = m_before;
    }
    m_isInsertion = isInsertion;
    m_isPending = true;
}

// All of it at once: the number of the keys is a secret, too.
void SecretTyping::report(bool isEmptied)
{
    const QString what = isEmptied ? QStringLiteral("type") : QStringLiteral("password");
    QVariantMap more;
    if (isEmptied)
        more[QStringLiteral("text")] = QStringLiteral("<Ctrl+A><Backspace>");
    if (m_number == 0)
        m_number = m_report.add(what, m_field, more);
    else if (isEmptied || m_isEmptied)
        m_report.replace(m_number, what, m_field, more);
    m_isEmptied = isEmptied;
}

QString SecretTyping::takeShortcut()
{
    return std::exchange(m_heldBack, {});
}

void SecretTyping::settle()
{
    m_heldBack.clear();
    if (!std::exchange(m_isPending, false) || !m_field || !m_field->isVisible() ||
        !fieldOf(m_field))
        return;
    const QString content = contentOf(m_field);
    const bool hasChangedNow = content != m_before;
    m_hasChanged = m_hasChanged || hasChangedNow;
    // A field that the application empties after each text was filled nevertheless.
    const bool isEmptied = content.isEmpty() && !m_isInsertion;
    if (hasChangedNow && !(isEmptied && m_first.isEmpty())) {
        report(isEmptied);
    } else if (m_number > 0 && (hasChangedNow || !m_hasChanged)) {
        m_report.cancel(m_number);
        m_number = 0;
    }
}

} // namespace Morvex
