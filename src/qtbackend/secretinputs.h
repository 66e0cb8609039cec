#pragma once

class QObject;

namespace Morvex {

/// From now on what the object holds is a secret if it is shown as dots now, whatever shows it
/// later.
void noteSecretInput(const QObject *object);

/// Whether it shows what is typed into it as dots, or not at all, or was noted.
bool hidesItsText(const QObject *object);

} // namespace Morvex
