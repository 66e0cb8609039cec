#pragma once

#include <QString>

class QKeyEvent;
class QKeySequence;
class QObject;

namespace Morvex {

/// The key as typeText takes it: "a", "<<", "<Ctrl+S>". Empty for keys that do nothing alone.
QString typedKeyOf(const QKeyEvent &event);

/// A text as typeText takes it.
QString typedTextOf(const QString &text);

/// The keys of a shortcut as typeText takes them, which a keyboard may have given other names. The
/// first is @p pressed, as it was typed, where that comes to the same.
QString shortcutKeysOf(const QKeySequence &shortcut, const QString &pressed);

/// Whether what is typed into the object now is not for others to see.
bool isSecretInput(QObject *object);

/// Whether other keys that change its meaning were pressed before.
bool isWithModifiers(const QKeyEvent &event);
bool isTabKey(const QKeyEvent &event);
/// Whether the key presses a button that has the focus.
bool isPushKey(const QKeyEvent &event);
/// Whether the key chooses an entry of a menu or a list.
bool isChoiceKey(const QKeyEvent &event);

/// What a key does in a field whose text is a secret.
enum class SecretKey {
    Text,
    /// From the clipboard.
    Inserting,
    /// Also what takes back an earlier change.
    Deleting,
    /// It moves the cursor, or selects.
    Moving,
    /// It may be a part of the secret, or a shortcut.
    Command,
    /// It says nothing about the secret.
    Shown,
};

/// Of a key that is one to typedKeyOf.
SecretKey secretKeyOf(const QKeyEvent &event);

} // namespace Morvex
