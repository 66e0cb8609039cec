#include "qtbackend/secretinputs.h"

#include <QHash>
#include <QLineEdit>
#include <QPointer>
#include <QVariant>

namespace Morvex {
namespace {

// Another object may be made at the place of one that no longer exists.
QHash<const QObject *, QPointer<QObject>> &knownInputs()
{
    static QHash<const QObject *, QPointer<QObject>> inputs;
    return inputs;
}

bool wasSecretInput(const QObject *object)
{
    return knownInputs().value(object) != nullptr;
}

} // namespace

void noteSecretInput(const QObject *object)
{
    if (hidesItsText(object))
        knownInputs().insert(object, const_cast<QObject *>(object));
}

bool hidesItsText(const QObject *object)
{
    for (const char *property : {"echoMode", "textEchoMode"}) {
        const QVariant mode = object->property(property);
        if (mode.isValid())
            return mode.toInt() != QLineEdit::Normal || wasSecretInput(object);
    }
    return false;
}

} // namespace Morvex
