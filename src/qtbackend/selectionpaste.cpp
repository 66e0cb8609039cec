#include "qtbackend/selectionpaste.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/inputmask.h"
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

// What is pasted into a mask takes the places of what was there, but for those that are blank.
QString keysOver(const QLineEdit &line, int from)
{
    const QString mask = line.inputMask();
    const int end = mask.lastIndexOf(QLatin1Char(';'));
    const QChar blank = end < 0 ? QLatin1Char(' ') : mask.at(mask.size() - 1);
    const QString shown = line.displayText();
    QString keys;
    for (const int stop : cursorStops(mask)) {
        if (stop >= from && stop < qMin(line.cursorPosition(), shown.size()))
            keys +=
                shown.at(stop) == blank ? QStringLiteral("<Right>") : typedTextOf(shown.at(stop));
    }
    return keys;
}

} // namespace

void SelectionPaste::begin(QWidget *target, const QPoint &globalPlace)
{
    // A field has moved its cursor when the button was pressed.
    const auto *line = qobject_cast<const QLineEdit *>(target);
    m_place = line ? line->cursorPosition() : textPositionAt(target, globalPlace);
    m_target = target;
    m_name = m_report.nameOf(ownerOf(target));
    m_before = TextCursorState::at(target, m_place);
    m_way = m_before.keys();
}

void SelectionPaste::settle()
{
    QWidget *target = m_target;
    m_target = nullptr;
    if (!target)
        return;
    const auto *line = qobject_cast<const QLineEdit *>(target);
    const bool isMasked = line && !line->inputMask().isEmpty();
    const QString text = isMasked ? QString() : TextCursorState::of(target).textSince(m_before);
    const QString keys = isMasked ? keysOver(*line, m_place) : keysOf(text);
    const bool isSecret = isSecretInput(target);
    // No key writes a line end into a field.
    if (!isSecret && line && std::any_of(text.begin(), text.end(), isControl))
        m_report.add(QStringLiteral("set"), m_name,
                     {{QStringLiteral("property"), QStringLiteral("text")},
                      {QStringLiteral("value"), line->text()}});
    else if (!isSecret)
        reportKeys(target, keys);
    else if (!keys.isEmpty())
        m_report.add(QStringLiteral("password"), m_name);
}

void SelectionPaste::reportKeys(QWidget *target, const QString &keys) const
{
    if (qobject_cast<const QLineEdit *>(target) || !keys.isEmpty())
        m_report.addCursor(m_name, ownerOf(target), m_way);
    if (!keys.isEmpty())
        m_report.add(QStringLiteral("type"), m_name, {{QStringLiteral("text"), keys}});
}

} // namespace Morvex
