#include "qtbackend/scenevalue.h"

#include "qtbackend/objecttree.h"
#include "qtbackend/sceneaccess.h"

#include <QMetaProperty>
#include <QRect>

#include <algorithm>
#include <cmath>

namespace Morvex {
namespace {

const struct
{
    const char *type;
    const char *property;
    // By which it says that it was the user; null where it doesn't.
    const char *signal;
} values[] = {
    {"QQuickSlider", "value", "moved"},
    {"QQuickDial", "value", "moved"},
    {"QQuickRangeSliderNode", "value", "moved"},
    {"QQuickSpinBox", "value", "valueModified"},
    {"QQuickPageIndicator", "currentIndex", nullptr},
};

const double shownPartOfPixel = 0.1;
const double smallPartOfStep = 1e-6;
const int maxDecimals = 17;

// By the height where one part is above the other, with what keeps it so.
struct PaneSize
{
    const char *size;
    const char *kept;
};

PaneSize paneSizeIn(const QObject *splitView)
{
    const bool isUpright = splitView->property("orientation").toInt() == Qt::Vertical;
    return isUpright ? PaneSize{"height", "preferredHeight"} : PaneSize{"width", "preferredWidth"};
}

// What a split view knows of an item in it; null for any other object.
QObject *splitPartOf(const QObject *object)
{
    const QObjectList &children = object->children();
    const auto found = std::find_if(children.begin(), children.end(), [](const QObject *child) {
        return child->inherits("QQuickSplitViewAttached");
    });
    return found == children.end() ? nullptr : *found;
}

// Null for an item that is directly in none.
QObject *splitViewAround(const QObject *item)
{
    const SceneAccess &access = *SceneAccess::self();
    QObject *content = access.parentOf(item);
    QObject *view = content ? access.parentOf(content) : nullptr;
    return view && view->inherits("QQuickSplitView") ? view : nullptr;
}

std::vector<SceneValue> panesOf(const QObject *splitView)
{
    const PaneSize size = paneSizeIn(splitView);
    const auto *content = splitView->property("contentItem").value<QObject *>();
    std::vector<SceneValue> panes;
    for (QObject *item : content ? SceneAccess::self()->childrenOf(content) : QObjectList()) {
        if (QObject *part = splitPartOf(item))
            panes.push_back(
                {item, QLatin1String(size.size), part, size.kept, part->property(size.kept)});
    }
    return panes;
}

std::vector<SceneValue> handlesOf(QObject *rangeSlider)
{
    std::vector<SceneValue> handles;
    for (const char *name : {"first", "second"}) {
        if (auto *node = rangeSlider->property(name).value<QObject *>())
            handles.push_back({rangeSlider, QLatin1String(name) + QLatin1String(".value"), node,
                               "value", node->property("value")});
    }
    return handles;
}

double numberOf(const QObject *item, const char *property)
{
    return item->property(property).toDouble();
}

// How far from a value another one is taken for the same.
double toleranceOf(const QObject *item, double value)
{
    const double start = numberOf(item, "from");
    const double end = numberOf(item, "to");
    const double step = numberOf(item, "stepSize");
    if (value == start || value == end)
        return 0;
    const double inStep = step > 0 ? std::abs(std::remainder(value - start, step)) : step;
    if (step > 0 && inStep <= step * smallPartOfStep)
        return step * smallPartOfStep;
    const double length = std::max(numberOf(item, "width"), numberOf(item, "height"));
    return length > 0 ? std::abs(end - start) / length * shownPartOfPixel : 0;
}

double withoutNeedlessDigits(double value, double tolerance)
{
    double plain = value;
    for (int decimals = 0; decimals <= maxDecimals; ++decimals) {
        plain = QString::number(value, 'f', decimals).toDouble();
        if (std::abs(plain - value) <= tolerance)
            return plain;
    }
    return value;
}

// The item of which the object is a handle, or which it is.
QObject *itemWith(QObject *object)
{
    return isSceneItem(object) ? object : object->parent();
}

void setPressed(QObject *object, bool isPressed)
{
    const QMetaObject *metaObject = object->metaObject();
    const QMetaProperty pressed = metaObject->property(metaObject->indexOfProperty("pressed"));
    if (pressed.isWritable())
        pressed.write(object, isPressed);
}

bool setByPress(QObject *object, const QByteArray &property, const QVariant &value,
                const char *signal)
{
    const SceneAccess &access = *SceneAccess::self();
    QObject *item = itemWith(object);
    const QPointer<QObject> alive = object;
    const bool isUsable = access.isShown(item) && access.isUsable(item);
    if (isUsable && (item->property("focusPolicy").toInt() & Qt::ClickFocus))
        access.giveFocus(item);
    if (alive && isUsable)
        setPressed(object, true);
    const bool isTaken = alive && object->setProperty(property, value);
    if (alive && isTaken && signal)
        QMetaObject::invokeMethod(object, signal);
    if (alive && isUsable)
        setPressed(object, false);
    return isTaken;
}

// What keeps the size of an item in a split view; null for any other property.
QObject *keeperOfSize(const QObject *object, const QByteArray &property)
{
    const QObject *view = isSceneItem(object) ? splitViewAround(object) : nullptr;
    return view && property == paneSizeIn(view).size ? splitPartOf(object) : nullptr;
}

} // namespace

bool SceneValue::isChanged() const
{
    return item && keeper && keeper->property(keptProperty) != kept;
}

QVariantMap SceneValue::setting() const
{
    const bool isOfItem = item->metaObject()->indexOfProperty(property.toLatin1()) >= 0;
    return sceneSetting(item, property,
                        isOfItem ? item->property(property.toLatin1())
                                 : keeper->property(keptProperty));
}

std::vector<SceneValue> sceneValuesOf(QObject *item)
{
    if (item->inherits("QQuickSplitView"))
        return panesOf(item);
    if (item->inherits("QQuickRangeSlider"))
        return handlesOf(item);
    const char *property = sceneValueOf(item);
    if (!property)
        return {};
    return {{item, QLatin1String(property), item, property, item->property(property)}};
}

const char *sceneValueOf(const QObject *item)
{
    for (const auto &known : values) {
        if (item && item->inherits(known.type))
            return known.property;
    }
    return nullptr;
}

QVariantMap sceneSetting(const QObject *item, const QString &property, const QVariant &value)
{
    QVariantMap setting{{QStringLiteral("property"), property}, {QStringLiteral("value"), value}};
    if (value.userType() != QMetaType::Double)
        return setting;
    const double exact = value.toDouble();
    const double plain = splitPartOf(item) && !item->property("to").isValid()
                             ? std::round(exact)
                             : withoutNeedlessDigits(exact, toleranceOf(item, exact));
    setting[QStringLiteral("value")] = plain;
    if (plain != exact)
        setting[QStringLiteral("exact")] = exact;
    return setting;
}

bool isSceneValue(const QObject *object, const QByteArray &property)
{
    const char *known = sceneValueOf(object);
    return (known && property == known) || keeperOfSize(object, property);
}

bool setSceneValue(QObject *object, const QByteArray &property, const QVariant &value)
{
    for (const auto &known : values) {
        if (property == known.property && object->inherits(known.type))
            return setByPress(object, property, value, known.signal);
    }
    // The view lays out its parts later, by what they ask for.
    QObject *keeper = keeperOfSize(object, property);
    return object->setProperty(property, value) &&
           keeper->setProperty(paneSizeIn(splitViewAround(object)).kept, value);
}

} // namespace Morvex
