#include "qtbackend/scenepages.h"

#include "qtbackend/actionreport.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/scenevalue.h"
#include "qtbackend/sceneview.h"

#include <QPoint>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace Morvex {
namespace {

const int pollMs = 100;

std::vector<QPointer<QObject>> drawersIn(const QObject *root)
{
    std::vector<QPointer<QObject>> drawers;
    const QObjectList popups = root ? SceneAccess::self()->popupsIn(root) : QObjectList();
    std::copy_if(popups.begin(), popups.end(), std::back_inserter(drawers),
                 [](const QObject *popup) { return popup->inherits("QQuickDrawer"); });
    return drawers;
}

bool isOneOf(const std::vector<QPointer<QObject>> &objects, const QObject *object)
{
    return std::find(objects.begin(), objects.end(), object) != objects.end();
}

bool isAtRest(const QObject *object)
{
    const auto *view = object->property("contentItem").value<QObject *>();
    return !object->property("moving").toBool() && !(view && view->property("moving").toBool());
}

bool isDrawerAtRest(const QObject *drawer)
{
    const qreal position = drawer->property("position").toReal();
    return position <= 0 || position >= 1;
}

// Whether the wheel may change its value.
bool isTurned(const QObject *item)
{
    return isSceneComboBox(item) || sceneValueOf(item);
}

} // namespace

ScenePages::ScenePages(ActionReport &report)
    : m_report(report)
{
    m_timer.setInterval(pollMs);
    QObject::connect(&m_timer, &QTimer::timeout, [this] { settle(false); });
}

void ScenePages::begin(QObject *root, const QPoint &place)
{
    settle(true);
    cancel();
    m_root = root;
    m_drawers = drawersIn(root);
    m_numberBefore = m_report.lastNumber();
    watchAround(SceneAccess::self()->takerAt(root, place, Qt::LeftButton));
    m_wasMoving = isMoving();
}

void ScenePages::beginWheel(QObject *root, const QPoint &place)
{
    begin(root, place);
    const SceneAccess &access = *SceneAccess::self();
    QObject *item = access.takerAt(root, place, Qt::LeftButton);
    while (item && !isTurned(item))
        item = access.parentOf(item);
    if (item)
        watch(item, isSceneComboBox(item) ? "currentIndex" : sceneValueOf(item));
}

void ScenePages::cancel()
{
    m_watched.clear();
    m_drawers.clear();
    m_root = nullptr;
}

// A view that is a part of another says the same as that.
void ScenePages::watchAround(QObject *item)
{
    const QObject *inner = nullptr;
    for (; item; item = SceneAccess::self()->parentOf(item)) {
        if (!isScenePaged(item))
            continue;
        const auto *content = item->property("contentItem").value<QObject *>();
        const bool isWhole = inner && content &&
                             (inner == content || SceneAccess::self()->parentOf(inner) == content);
        if (isWhole)
            m_watched.pop_back();
        watch(item, "currentIndex");
        inner = item;
    }
}

void ScenePages::watch(QObject *object, const char *property)
{
    m_watched.push_back({object, property, object->property(property)});
}

void ScenePages::end(bool isMoved)
{
    if (!isMoved && !m_wasMoving)
        cancel();
    m_isDone = m_root;
    if (m_isDone)
        m_timer.start();
}

bool ScenePages::isMoving() const
{
    const auto drawers = drawersIn(m_root);
    return std::any_of(m_watched.begin(), m_watched.end(),
                       [](const Watched &watched) {
                           return watched.object && !isAtRest(watched.object);
                       }) ||
           !std::all_of(drawers.begin(), drawers.end(), isDrawerAtRest);
}

void ScenePages::settle(bool isLast)
{
    if (!m_isDone || (!isLast && isMoving()))
        return;
    m_isDone = false;
    m_timer.stop();
    reportDrawers();
    for (const Watched &watched : std::exchange(m_watched, {})) {
        const QVariant value =
            watched.object ? watched.object->property(watched.property) : watched.value;
        if (value != watched.value)
            report(watched.object, watched.property, value);
    }
    cancel();
}

// One that was closed by a press beside it was reported as that.
void ScenePages::reportDrawers()
{
    const auto open = drawersIn(m_root);
    for (const QPointer<QObject> &drawer : open) {
        if (!isOneOf(m_drawers, drawer))
            report(drawer, "visible", true);
    }
    for (const QPointer<QObject> &drawer : m_drawers) {
        if (drawer && !isOneOf(open, drawer) && m_report.lastNumber() == m_numberBefore)
            report(drawer, "visible", false);
    }
}

// By one step of the wheel after the other.
void ScenePages::reportEntry(QObject *box, int row)
{
    const QString click = QStringLiteral("click");
    const QVariantMap more{{QStringLiteral("item"), sceneEntrySelector(box, row)}};
    if (m_turnedBox == box && m_boxNumber == m_report.lastNumber())
        m_report.replace(m_boxNumber, click, box, more);
    else
        m_boxNumber = m_report.add(click, box, more);
    m_turnedBox = box;
}

void ScenePages::report(QObject *object, const char *property, const QVariant &value)
{
    if (isSceneComboBox(object))
        reportEntry(object, value.toInt());
    else
        m_report.add(QStringLiteral("set"), object,
                     sceneSetting(object, QLatin1String(property), value));
}

} // namespace Morvex
