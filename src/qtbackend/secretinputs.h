#pragma once

class QObject;

namespace Morvex {

/// From now on what the object holds is a secret if it is shown as dots now, whatever shows it
/// later.
void noteSecretInput(const QObject *object);

/// Whether it was noted as one.
bool wasSecretInput(const QObject *object);

} // namespace Morvex
