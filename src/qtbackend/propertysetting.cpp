#include "qtbackend/propertysetting.h"

#include "qtbackend/scenevalue.h"
#include "qtbackend/widgetvalue.h"

#include <QAbstractSlider>
#include <QMetaProperty>
#include <QPointer>
#include <QWidget>

namespace Morvex {
namespace {

void moveHandle(QAbstractSlider *slider, int position)
{
    const QPointer<QAbstractSlider> alive = slider;
    slider->setSliderDown(true);
    if (alive)
        slider->setSliderPosition(position);
    if (alive)
        slider->setSliderDown(false);
}

} // namespace

bool setLikeUser(QObject *object, const QByteArray &property, const QVariant &value)
{
    auto *widget = qobject_cast<QWidget *>(object);
    const bool isValue = widget && property == valuePropertyOf(widget) && !property.isEmpty();
    const bool isUsable = isValue && widget->isVisible() && widget->isEnabled();
    if (isUsable && (widget->focusPolicy() & Qt::ClickFocus))
        widget->setFocus(Qt::OtherFocusReason);
    QVariant number = value;
    if (isUsable && isSlider(object) && number.convert(QMetaType::Int) &&
        number != object->property("value")) {
        moveHandle(static_cast<QAbstractSlider *>(object), number.toInt());
        return true;
    }
    const QMetaObject *metaObject = object->metaObject();
    const QMetaProperty known = metaObject->property(metaObject->indexOfProperty(property));
    return isSceneValue(object, property) ? setSceneValue(object, property, value)
                                          : known.write(object, value);
}

} // namespace Morvex
