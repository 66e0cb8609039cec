#pragma once

#include <QString>

#include <vector>

namespace Morvex {

struct TypedKey
{
    /// Of Qt::Key, or the code of a character.
    int key = 0;
    Qt::KeyboardModifiers modifiers;
    /// What an editor inserts; empty for keys that only do something.
    QString text;
};

/// Reads the notation of typeText. Returns an error text, empty on success.
[[nodiscard]] QString readTypedKeys(const QString &text, std::vector<TypedKey> *keys);

} // namespace Morvex
