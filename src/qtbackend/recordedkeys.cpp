#include "qtbackend/recordedkeys.h"

#include "qtbackend/identification.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>

namespace Morvex {
namespace {

const Qt::KeyboardModifiers commandModifiers =
    Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

bool isModifierKey(int key)
{
    return (key >= Qt::Key_Shift && key <= Qt::Key_ScrollLock) ||
           (key >= Qt::Key_Super_L && key <= Qt::Key_Hyper_R) || key == Qt::Key_AltGr ||
           key == Qt::Key_Mode_switch || key == Qt::Key_Multi_key;
}

bool isDeadKey(int key)
{
    return key >= Qt::Key_Dead_Grave && key <= Qt::Key_Dead_Longsolidusoverlay;
}

bool isShown(const QString &text)
{
    return !text.isEmpty() && text.at(0).category() != QChar::Other_Control;
}

bool isLineEnd(const QString &text)
{
    return text == QLatin1String("\r") || text == QLatin1String("\n");
}

// With V the secret is pasted.
bool isCommandLetter(const QKeyEvent &event)
{
    return (event.modifiers() & Qt::ControlModifier) && event.key() >= Qt::Key_A &&
           event.key() <= Qt::Key_Z && event.key() != Qt::Key_V;
}

// Without what the way of typing adds to the key.
int modifiersOf(const QKeyEvent &event)
{
    Qt::KeyboardModifiers modifiers = event.modifiers() & (commandModifiers | Qt::ShiftModifier);
    if (event.key() == Qt::Key_Backtab)
        modifiers &= ~Qt::ShiftModifier;
    return modifiers;
}

} // namespace

QString typedTextOf(const QString &text)
{
    QString keys = text;
    keys.replace(QLatin1Char('<'), QLatin1String("<<"));
    return keys;
}

QString typedKeyOf(const QKeyEvent &event)
{
    if (isModifierKey(event.key()) || isDeadKey(event.key()))
        return {};
    if (isShown(event.text()) && !(event.modifiers() & commandModifiers))
        return typedTextOf(event.text());
    int key = event.key();
    // Line feeds, which some keyboards have.
    if (key != Qt::Key_Return && key != Qt::Key_Enter && isLineEnd(event.text()))
        key = Qt::Key_Return;
    if (key == 0 || key == Qt::Key_unknown)
        return {};
    const QString name =
        QKeySequence(key | modifiersOf(event)).toString(QKeySequence::PortableText);
    return name.isEmpty() || !isShown(name) ? QString()
                                            : QLatin1Char('<') + name + QLatin1Char('>');
}

bool isSecretInput(QObject *object)
{
    if (!object)
        return false;
    const auto *box = qobject_cast<const QComboBox *>(object);
    if (hidesItsText(box && box->lineEdit() ? box->lineEdit() : object))
        return true;
    QInputMethodQueryEvent query(Qt::ImHints);
    QCoreApplication::sendEvent(object, &query);
    return Qt::InputMethodHints(query.value(Qt::ImHints).toInt()) & Qt::ImhHiddenText;
}

bool isCursorKey(const QKeyEvent &event)
{
    return event.key() >= Qt::Key_Home && event.key() <= Qt::Key_Down;
}

bool isTabKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab;
}

bool isPushKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Space || event.key() == Qt::Key_Select;
}

bool isChoiceKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
           event.key() == Qt::Key_Select;
}

bool isHarmlessInSecret(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Escape:
        return true;
    default:
        return (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F35) ||
               (event.modifiers() & Qt::AltModifier) || isCommandLetter(event);
    }
}

} // namespace Morvex
