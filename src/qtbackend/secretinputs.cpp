#include "qtbackend/secretinputs.h"

#include "qtbackend/identification.h"

#include <QHash>
#include <QPointer>

namespace Morvex {
namespace {

// Another object may be made at the place of one that no longer exists.
QHash<const QObject *, QPointer<QObject>> &knownInputs()
{
    static QHash<const QObject *, QPointer<QObject>> inputs;
    return inputs;
}

} // namespace

void noteSecretInput(const QObject *object)
{
    if (hidesItsText(object))
        knownInputs().insert(object, const_cast<QObject *>(object));
}

bool wasSecretInput(const QObject *object)
{
    return knownInputs().value(object) != nullptr;
}

} // namespace Morvex
