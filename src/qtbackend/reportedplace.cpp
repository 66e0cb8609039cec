#include "qtbackend/reportedplace.h"

#include "qtbackend/recordedtarget.h"

namespace Morvex {
namespace {

QString buttonName(Qt::MouseButton button)
{
    switch (button) {
    case Qt::RightButton:
        return QStringLiteral("right");
    case Qt::MiddleButton:
        return QStringLiteral("middle");
    case Qt::BackButton:
        return QStringLiteral("back");
    case Qt::ForwardButton:
        return QStringLiteral("forward");
    default:
        return QStringLiteral("left");
    }
}

QString modifierNames(Qt::KeyboardModifiers modifiers)
{
    QStringList names;
    const std::pair<Qt::KeyboardModifier, QLatin1String> known[] = {
        {Qt::ShiftModifier, QLatin1String("Shift")},
        {Qt::ControlModifier, QLatin1String("Ctrl")},
        {Qt::AltModifier, QLatin1String("Alt")},
        {Qt::MetaModifier, QLatin1String("Meta")},
    };
    for (const auto &[modifier, name] : known) {
        if (modifiers & modifier)
            names += name;
    }
    return names.join(QLatin1Char('+'));
}

} // namespace

QVariantMap reportedPlace(const RecordedTarget &target)
{
    QVariantMap place;
    if (!target.item.isEmpty())
        place[QStringLiteral("item")] = target.item;
    if (target.place) {
        place[QStringLiteral("x")] = target.place->x();
        place[QStringLiteral("y")] = target.place->y();
    }
    return place;
}

void addButtonTo(QVariantMap *place, Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    if (button != Qt::LeftButton)
        place->insert(QStringLiteral("button"), buttonName(button));
    if (!modifierNames(modifiers).isEmpty())
        place->insert(QStringLiteral("modifiers"), modifierNames(modifiers));
}

} // namespace Morvex
