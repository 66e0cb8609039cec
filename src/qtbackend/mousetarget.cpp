#include "qtbackend/mousetarget.h"

#include "qtbackend/identification.h"
#include "qtbackend/inputsequence.h"
#include "qtbackend/item.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/quickwidgets.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenereveal.h"
#include "qtbackend/scrolling.h"
#include "qtbackend/whyblocked.h"
#include "qtbackend/windowactivation.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QCheckBox>
#include <QGroupBox>
#include <QMdiSubWindow>
#include <QMenu>
#include <QRadioButton>
#include <QStyle>
#include <QStyleOption>

namespace Morvex {
namespace {

// In pixels, of a tab or a section of a header.
const int pastMiddle = 3;

void clickAt(const MouseSpot &spot)
{
    endClicks();
    moveMouse(spot, Qt::NoButton, Qt::NoModifier);
    pressMouse(spot, Qt::LeftButton, Qt::NoModifier);
    releaseMouse(spot, Qt::LeftButton, Qt::NoModifier);
}

QPoint indicatorOf(const QWidget *button, QStyle::SubElement indicator)
{
    QStyleOptionButton option;
    option.initFrom(button);
    return button->style()->subElementRect(indicator, &option, button).center();
}

QPoint checkBoxOf(const QGroupBox *box)
{
    QStyleOptionGroupBox option;
    option.initFrom(box);
    option.text = box->title();
    option.textAlignment = box->alignment();
    option.subControls |= QStyle::SC_GroupBoxCheckBox | QStyle::SC_GroupBoxLabel;
    return box->style()
        ->subControlRect(QStyle::CC_GroupBox, &option, QStyle::SC_GroupBoxCheckBox, box)
        .center();
}

// Some widgets react only in a part that may be far from the middle.
QPoint reactingPlace(const QWidget *widget)
{
    if (qobject_cast<const QCheckBox *>(widget))
        return indicatorOf(widget, QStyle::SE_CheckBoxIndicator);
    if (qobject_cast<const QRadioButton *>(widget))
        return indicatorOf(widget, QStyle::SE_RadioButtonIndicator);
    // By its title bar.
    const auto *inner = qobject_cast<const QMdiSubWindow *>(widget);
    if (inner && inner->widget() && inner->widget()->y() > 0)
        return {inner->width() / 2, inner->widget()->y() / 2};
    const auto *box = qobject_cast<const QGroupBox *>(widget);
    return box && box->isCheckable() ? checkBoxOf(box) : widget->rect().center();
}

// The widget that a click at this place gets; null when it is none within widget.
QWidget *receiverOf(QWidget *widget, const QPoint &place, QString *error)
{
    QWidget *window = widget->window();
    QWidget *child = window->childAt(widget->mapTo(window, place));
    QWidget *topmost = child ? child : window;
    const bool isOutside = !isInSight(widget, place);
    if (!isOutside && (topmost == widget || widget->isAncestorOf(topmost) ||
                       widget->testAttribute(Qt::WA_TransparentForMouseEvents)))
        return topmost;
    *error = QStringLiteral("%1,%2 in the widget is %3")
                 .arg(place.x())
                 .arg(place.y())
                 .arg(isOutside ? QStringLiteral("out of sight")
                                : QLatin1String("covered by ") + realNameOf(topmost));
    return nullptr;
}

// Somewhere in the part that can be seen when the best place can't.
QPoint placeToClick(QWidget *widget)
{
    const QPoint best = reactingPlace(widget);
    const QPoint visible = widget->visibleRegion().boundingRect().center();
    QString error;
    return !receiverOf(widget, best, &error) && receiverOf(widget, visible, &error) ? visible
                                                                                    : best;
}

// What a scroll area shows is a widget of its own.
QWidget *shownPartOf(QWidget *widget)
{
    auto *area = qobject_cast<QAbstractScrollArea *>(widget);
    return area ? area->viewport() : widget;
}

} // namespace

bool clickWhereFree(QWidget *widget, const QPoint &place)
{
    QString error;
    const MouseSpot spot = MouseSpot::of(widget, place);
    if (!widget->rect().contains(place) || !receiverOf(widget, place, &error) || !spot.isValid())
        return false;
    clickAt(spot);
    return true;
}

QString clickSceneItem(QObject *item)
{
    QString error;
    const auto target = MouseTarget::make({item, {}, std::nullopt}, &error);
    const MouseSpot spot = target ? target->spot(&error) : MouseSpot();
    if (error.isEmpty())
        clickAt(spot);
    return error;
}

QWidget *openMenuOf(const QAction *action)
{
    for (QWidget *place : action->associatedWidgets()) {
        if (qobject_cast<QMenu *>(place) && place->isVisible())
            return place;
    }
    return nullptr;
}

std::shared_ptr<MouseTarget> MouseTarget::make(const Place &place, QString *error)
{
    auto target = std::make_shared<MouseTarget>();
    target->m_object = place.object;
    target->m_place = place.place;
    if (!place.item.isEmpty()) {
        target->m_item = existingItem(place.object, place.item, error);
        if (error->isEmpty())
            *error = target->m_item->whyBlocked();
    } else if (const auto *action = qobject_cast<QAction *>(place.object)) {
        *error = whyBlocked(action);
    } else {
        // A window of items stands for all of them.
        QObject *root = SceneAccess::self() ? SceneAccess::self()->rootOf(place.object) : nullptr;
        if (root)
            target->m_object = root;
        *error = whyBlocked(target->m_object);
    }
    return error->isEmpty() ? target : nullptr;
}

void MouseTarget::reveal(InputSequence &input)
{
    if (isSceneItem(m_object)) {
        revealSceneItem(m_object, input);
        if (m_item)
            m_item->reveal(input);
        return;
    }
    waitForActiveWindow(m_item ? m_object.data() : widget(), input);
    if (m_item)
        m_item->reveal(input);
}

QWidget *MouseTarget::widget() const
{
    if (m_item)
        return m_item->widget();
    if (const auto *action = qobject_cast<QAction *>(m_object.data()))
        return openMenuOf(action);
    auto *widget = qobject_cast<QWidget *>(m_object.data());
    return widget ? shownPartOf(widget) : nullptr;
}

QPoint MouseTarget::placeIn(QWidget *widget, QString *error) const
{
    const auto *action = qobject_cast<QAction *>(m_object.data());
    if (!m_item && !action)
        return m_place ? *m_place : placeToClick(widget);
    const QRect part =
        m_item ? m_item->place()
               : static_cast<QMenu *>(widget)->actionGeometry(const_cast<QAction *>(action));
    const QRect visible = part.intersected(widget->rect());
    if (visible.isEmpty())
        *error = m_item ? QStringLiteral("the item is hidden")
                        : QStringLiteral("the action is out of sight in its menu");
    return m_place ? part.topLeft() + *m_place : visible.center();
}

MouseSpot MouseTarget::sceneSpot(QString *error) const
{
    const SceneAccess &access = *SceneAccess::self();
    const QObject *object = m_item ? m_item->sceneItem() : m_object.data();
    *error = object ? whyBlocked(object) : QStringLiteral("the item is not shown");
    if (!error->isEmpty())
        return {};
    const QRect visible = access.visiblePlaceOf(object);
    const QRect part = m_item && !m_place ? m_item->place() : QRect();
    const QPoint place = m_place          ? access.toWindow(object, *m_place)
                         : part.isEmpty() ? visible.center()
                                          : access.toWindow(object, part.center());
    // The edges belong to an item, too.
    const bool isInSight = m_isBeyond ? QRect({}, access.windowOf(object)->size()).contains(place)
                                      : visible.adjusted(0, 0, 1, 1).contains(place);
    if (!isInSight)
        *error = QStringLiteral("the item is out of sight");
    const QObject *cover =
        error->isEmpty() && !m_isBeyond ? access.coverOf(object, place) : nullptr;
    if (cover)
        *error = QLatin1String("the item is covered by ") + realNameOf(cover);
    QWidget *widget = error->isEmpty() ? widgetOf(object) : nullptr;
    if (!widget)
        return {access.windowOf(object), place};
    scrollIntoSight(widget, place);
    return receiverOf(widget, place, error) ? MouseSpot::of(widget, place) : MouseSpot();
}

QPoint MouseTarget::wayBeyond(const QPoint &way) const
{
    if (!m_item || m_place || !m_item->isInBar())
        return {};
    const bool isAcross = qAbs(way.x()) > qAbs(way.y());
    const int beyond = (isAcross ? way.x() : way.y()) < 0 ? -pastMiddle : pastMiddle;
    return isAcross ? QPoint(beyond, 0) : QPoint(0, beyond);
}

MouseSpot MouseTarget::spot(QString *error)
{
    if (isSceneItem(m_object))
        return sceneSpot(error);
    QWidget *where = widget();
    if (!where) {
        *error = QStringLiteral("the object no longer exists");
        return {};
    }
    *error = m_item ? m_item->whyBlocked() : QString();
    if (error->isEmpty())
        *error = whyBlocked(where);
    if (error->isEmpty() && !m_item)
        scrollIntoSight(where, m_place ? *m_place : reactingPlace(where));
    const QPoint place = error->isEmpty() ? placeIn(where, error) : QPoint();
    if (error->isEmpty() && !where->rect().contains(place))
        *error = QStringLiteral("%1,%2 is outside the widget").arg(place.x()).arg(place.y());
    QWidget *receiver = error->isEmpty() ? receiverOf(where, place, error) : nullptr;
    const QString reason = receiver ? whyBlocked(receiver) : QString();
    if (!reason.isEmpty())
        *error = QStringLiteral("%1: %2").arg(realNameOf(receiver), reason);
    const MouseSpot spot = error->isEmpty() ? MouseSpot::of(where, place) : MouseSpot();
    if (error->isEmpty() && !spot.isValid())
        *error = QStringLiteral("the window of the widget is not on the screen");
    if (!spot.isValid() && m_item)
        m_item->conceal();
    return spot;
}

} // namespace Morvex
