#include "qtbackend/recordedkeys.h"

#include "qtbackend/secretinputs.h"
#include "qtbackend/typedkeys.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QLineEdit>

#include <algorithm>
#include <initializer_list>
#include <vector>

namespace Morvex {
namespace {

const Qt::KeyboardModifiers commandModifiers =
    Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

// Keys from here on are not characters.
const int firstSpecialKey = 0x01000000;

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

bool matchesOneOf(const QKeyEvent &event, std::initializer_list<QKeySequence::StandardKey> keys)
{
    return std::any_of(keys.begin(), keys.end(), [&event](auto key) { return event.matches(key); });
}

bool isDeleting(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Backspace || event.key() == Qt::Key_Delete ||
           matchesOneOf(event, {QKeySequence::Cut, QKeySequence::Undo, QKeySequence::Redo,
                                QKeySequence::DeleteEndOfLine, QKeySequence::DeleteCompleteLine,
                                QKeySequence::DeleteStartOfWord, QKeySequence::DeleteEndOfWord});
}

bool isMoving(const QKeyEvent &event)
{
    const bool isCursorKey = event.key() >= Qt::Key_Home && event.key() <= Qt::Key_Down &&
                             !(event.modifiers() & (Qt::AltModifier | Qt::MetaModifier));
    return isCursorKey ||
           matchesOneOf(event, {QKeySequence::SelectAll, QKeySequence::Copy,
                                QKeySequence::MoveToStartOfLine, QKeySequence::MoveToEndOfLine});
}

// Without what the way of typing adds to the key.
int modifiersOf(const QKeyEvent &event)
{
    Qt::KeyboardModifiers modifiers = event.modifiers() & (commandModifiers | Qt::ShiftModifier);
    if (event.key() == Qt::Key_Backtab && !(modifiers & commandModifiers))
        modifiers &= ~Qt::ShiftModifier;
    return modifiers;
}

QString nameInText(int key)
{
    const QString name = QKeySequence(key).toString(QKeySequence::PortableText);
    return name == QLatin1String("<") ? typedTextOf(name)
                                      : QLatin1Char('<') + name + QLatin1Char('>');
}

bool comesTo(const QString &pressed, int key)
{
    std::vector<TypedKey> keys;
    return readTypedKeys(pressed, &keys).isEmpty() && keys.size() == 1 &&
           (keys.front().key | static_cast<int>(keys.front().modifiers)) == key;
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

QString shortcutKeysOf(const QKeySequence &shortcut, const QString &pressed)
{
    QString keys;
    for (int i = 0; i < shortcut.count(); ++i)
        keys += i == 0 && comesTo(pressed, shortcut[0])
                    ? pressed
                    : nameInText(shortcut[static_cast<uint>(i)]);
    return keys;
}

bool isWithModifiers(const QKeyEvent &event)
{
    Qt::KeyboardModifiers own;
    switch (event.key()) {
    case Qt::Key_Shift:
        own = Qt::ShiftModifier;
        break;
    case Qt::Key_Control:
        own = Qt::ControlModifier;
        break;
    case Qt::Key_Alt:
        own = Qt::AltModifier;
        break;
    case Qt::Key_Meta:
        own = Qt::MetaModifier;
        break;
    default:
        break;
    }
    return event.modifiers() & (commandModifiers | Qt::ShiftModifier) & ~own;
}

bool isSecretInput(QObject *object)
{
    if (!object)
        return false;
    const auto *box = qobject_cast<const QComboBox *>(object);
    const QObject *field = box && box->lineEdit() ? box->lineEdit() : object;
    noteSecretInput(field);
    if (hidesItsText(field))
        return true;
    QInputMethodQueryEvent query(Qt::ImHints);
    QCoreApplication::sendEvent(object, &query);
    return Qt::InputMethodHints(query.value(Qt::ImHints).toInt()) & Qt::ImhHiddenText;
}

SecretKey secretKeyOf(const QKeyEvent &event)
{
    if (isShown(event.text()) && !(event.modifiers() & commandModifiers))
        return SecretKey::Text;
    if (event.matches(QKeySequence::Paste))
        return SecretKey::Inserting;
    if (isDeleting(event))
        return SecretKey::Deleting;
    if (isMoving(event))
        return SecretKey::Moving;
    const bool isCharacter = event.key() < firstSpecialKey || isShown(event.text());
    return isCharacter && (event.modifiers() & (Qt::AltModifier | Qt::MetaModifier))
               ? SecretKey::Command
               : SecretKey::Shown;
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

} // namespace Morvex
