#include "qtbackend/selectionpaste.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/recordedkeys.h"
#include "qtbackend/recordedtarget.h"

#include <QLineEdit>

#include <algorithm>

namespace Morvex {
namespace {

bool isControl(QChar character)
{
    return character.category() == QChar::Other_Control;
}

// The lines of an editor end in characters of their own.
QString keysOf(const QString &text)
{
    QString keys = typedTextOf(text);
    keys.replace(QChar(QChar::ParagraphSeparator), QLatin1String("<Return>"));
    keys.replace(QChar(QChar::LineSeparator), QLatin1String("<Shift+Return>"));
    keys.replace(QLatin1Char('\t'), QLatin1String("<Tab>"));
    return keys.remove(QChar(QChar::ObjectReplacementCharacter));
}

} // namespace

void SelectionPaste::begin(QWidget *target, const QPoint &globalPlace)
{
    // A field has moved its cursor when the button was pressed.
    const auto *line = qobject_cast<const QLineEdit *>(target);
    const int place = line ? line->cursorPosition() : textPositionAt(target, globalPlace);
    m_target = target;
    m_name = m_report.nameOf(ownerOf(target));
    m_before = TextCursorState::at(target, place);
    m_way = m_before.keys();
}

void SelectionPaste::settle()
{
    QWidget *target = m_target;
    m_target = nullptr;
    if (!target)
        return;
    const QString text = TextCursorState::of(target).textSince(m_before);
    if (!text.isEmpty() && isSecretInput(target))
        m_report.add(QStringLiteral("password"), m_name);
    else if (!isSecretInput(target))
        report(target, text);
}

void SelectionPaste::report(QWidget *target, const QString &text) const
{
    const auto *line = qobject_cast<const QLineEdit *>(target);
    // No key writes a line end into a field.
    if (line && std::any_of(text.begin(), text.end(), isControl)) {
        m_report.add(QStringLiteral("set"), m_name,
                     {{QStringLiteral("property"), QStringLiteral("text")},
                      {QStringLiteral("value"), line->text()}});
        return;
    }
    if (line || !text.isEmpty())
        m_report.addCursor(m_name, ownerOf(target), m_way);
    if (!text.isEmpty())
        m_report.add(QStringLiteral("type"), m_name, {{QStringLiteral("text"), keysOf(text)}});
}

} // namespace Morvex
