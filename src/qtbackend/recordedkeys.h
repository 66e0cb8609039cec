#pragma once

#include <QString>

class QKeyEvent;
class QObject;

namespace Morvex {

/// The key as typeText takes it: "a", "<<", "<Ctrl+S>". Empty for keys that do nothing alone.
QString typedKeyOf(const QKeyEvent &event);

/// A text as typeText takes it.
QString typedTextOf(const QString &text);

/// Whether what is typed into the object now is not for others to see.
bool isSecretInput(QObject *object);

/// Whether the key does nothing but move the cursor.
bool isCursorKey(const QKeyEvent &event);

bool isTabKey(const QKeyEvent &event);
/// Whether the key presses a button that has the focus.
bool isPushKey(const QKeyEvent &event);
/// Whether the key chooses an entry of a menu or a list.
bool isChoiceKey(const QKeyEvent &event);

/// Whether the key says nothing about what is typed, and may be seen nevertheless.
bool isHarmlessInSecret(const QKeyEvent &event);

} // namespace Morvex
