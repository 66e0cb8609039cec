#include "qtbackend/usagecounter.h"

#include "qtbackend/creationorder.h"
#include "qtbackend/standardtypes.h"
#include "qtbackend/usagerules.h"
#include "qtbackend/windowdistinction.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QTabBar>

#include <algorithm>
#include <utility>
#include <vector>

namespace Morvex {
namespace {

using UIAbstraction::ElementGeometry;
using UIAbstraction::StandardType;
using UIAbstraction::UIElement;
using UIAbstraction::UIEvent;

UIEvent chooseEvent()
{
    return UIEvent(QStringLiteral("choose"));
}

void addUsage(UIElement *element, const UIEvent &event)
{
    if (element && element->isEventRegistered(event))
        element->addUsage(event);
}

// A window that shows no elements of its own.
bool isPassing(const QWidget *window)
{
    return window->windowType() == Qt::Desktop || window->windowType() == Qt::ToolTip ||
           window->inherits("QComboBoxPrivateContainer");
}

// Menus and other windows without a frame are elements of the window that they belong to.
bool isWindowElement(const QWidget *widget)
{
    return widget->isWindow() && !(widget->parentWidget() && widget->windowType() == Qt::Popup);
}

QWidget *windowElementOf(QWidget *widget)
{
    while (!isWindowElement(widget))
        widget = widget->parentWidget();
    return widget;
}

QRect placeOf(const QObject *object)
{
    if (!object->isWidgetType())
        return {};
    const auto *widget = static_cast<const QWidget *>(object);
    return QRect(widget->mapToGlobal(QPoint()), widget->size());
}

} // namespace

QEvent::Type choiceEventType()
{
    static const int type = QEvent::registerEventType();
    return QEvent::Type(type);
}

UsageCounter::UsageCounter()
    : m_root(QString(), StandardType(), UIElement::unknownConcreteType())
{
    qApp->installEventFilter(this);
    // The last windows that were made and never shown.
    connect(qApp, &QCoreApplication::aboutToQuit, this, &UsageCounter::observeAllWindows);
    observeAllWindows();
}

QByteArray UsageCounter::dump()
{
    observeAllWindows();
    return UIElement::toByteArray(m_root.children());
}

bool UsageCounter::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::Show:
        if (watched->isWidgetType() && static_cast<QWidget *>(watched)->isWindow())
            observeWindowOf(static_cast<QWidget *>(watched));
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        if (watched->isWidgetType() &&
            static_cast<QMouseEvent *>(event)->button() == Qt::LeftButton &&
            !isHandedOn(static_cast<QWidget *>(watched),
                        static_cast<QMouseEvent *>(event)->timestamp()))
            count(static_cast<QWidget *>(watched),
                  [](const UsageRule &rule) { return rule.isByMouse; });
        break;
    case QEvent::MouseButtonRelease:
        countChoice(actionAt(watched, static_cast<QMouseEvent *>(event)->pos()));
        break;
    case QEvent::KeyPress:
        countChoice(actionFor(watched, static_cast<QKeyEvent *>(event)->key()));
        if (watched->isWidgetType() && !isHandedOn(static_cast<QWidget *>(watched),
                                                   static_cast<QKeyEvent *>(event)->timestamp()))
            count(static_cast<QWidget *>(watched),
                  [key = static_cast<QKeyEvent *>(event)->key()](const UsageRule &rule) {
                      return isByKey(rule, key);
                  });
        break;
    default:
        if (event->type() == choiceEventType())
            countChoice(qobject_cast<QAction *>(watched));
        break;
    }
    return false;
}

// Null for what is not in a menu that was seen.
void UsageCounter::countChoice(const QAction *action)
{
    if (action && action->isEnabled())
        addUsage(m_seen.value(action).element, chooseEvent());
}

// A widget hands what it doesn't want to its parent, at the same time.
bool UsageCounter::isHandedOn(const QWidget *widget, ulong timestamp)
{
    const bool isHandedOn = timestamp == m_lastTimestamp && m_lastReceiver &&
                            widget != m_lastReceiver && widget->isAncestorOf(m_lastReceiver);
    if (!isHandedOn) {
        m_lastReceiver = const_cast<QWidget *>(widget);
        m_lastTimestamp = timestamp;
    }
    return isHandedOn;
}

// Counts @p widget, which may be a part of an element, as what gets the events that fit.
template <typename Fits>
void UsageCounter::count(QWidget *widget, const Fits &fits)
{
    UIElement *element = widget->isEnabled() ? elementUnder(widget) : nullptr;
    if (!element)
        return;
    const QWidget *owner = widget;
    while (m_seen.value(owner->parentWidget()).element == element)
        owner = owner->parentWidget();
    for (const UsageRule &rule : usageRulesOf(owner)) {
        if (!fits(rule))
            continue;
        element->registerEvent(UIEvent(rule.event));
        element->addUsage(UIEvent(rule.event));
    }
}

UIElement *UsageCounter::elementUnder(QWidget *widget)
{
    const Seen known = m_seen.value(widget);
    if (known.object != widget || (!known.element && hasBecomeUsable(widget)))
        observeWindowOf(widget);
    return m_seen.value(widget).element;
}

// The application has made a field writable, a header one that sorts, or the like.
bool UsageCounter::hasBecomeUsable(const QWidget *widget) const
{
    while (widget && !m_seen.value(widget).element && usageRulesOf(widget).empty())
        widget = widget->parentWidget();
    return widget && !m_seen.value(widget).element;
}

bool UsageCounter::isElement(const QObject *object) const
{
    const Seen known = m_seen.value(object);
    return known.object == object && known.isOwn;
}

void UsageCounter::observeAllWindows()
{
    std::vector<std::pair<QStringList, QWidget *>> windows;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget *widget : widgets) {
        if (isWindowElement(widget))
            windows.emplace_back(orderOfUnnamed(*widget), widget);
    }
    std::stable_sort(windows.begin(), windows.end(),
                     [](const auto &a, const auto &b) { return a.first < b.first; });
    for (const auto &window : windows)
        observeWindowOf(window.second);
}

void UsageCounter::observeWindowOf(QWidget *widget)
{
    if (isPassing(widget->window()))
        return;
    forgetDeletedObjects();
    QWidget *window = windowElementOf(widget);
    if (isPassing(window))
        return;
    seeWidget(window, &m_root);
}

// Each time again: what can be done to a known widget may have become more.
void UsageCounter::seeWidget(QWidget *widget, UIElement *parent)
{
    const std::vector<UsageRule> rules = usageRulesOf(widget);
    const bool isKnown = isElement(widget);
    if (!isKnown && rules.empty() && !isContainer(widget) && !isWindowElement(widget)) {
        seeThrough(widget, parent);
        return;
    }
    UIElement *element = elementFor(widget, parent);
    for (const UsageRule &rule : rules)
        element->registerEvent(UIEvent(rule.event));
    if (!isKnown)
        connectSignals(widget, element);
    if (auto *bar = qobject_cast<QTabBar *>(widget))
        seeTabs(bar, element);
    isOneElement(widget) ? seeParts(widget, element) : seeChildren(widget, element);
}

// What is in it are elements beside it.
void UsageCounter::seeThrough(QWidget *widget, UIElement *parent)
{
    UIElement *owner = isViewport(widget) ? m_seen.value(widget->parentWidget()).element : nullptr;
    m_seen.insert(widget, {widget, owner, false});
    isOneElement(widget) ? seeParts(widget, nullptr) : seeChildren(widget, parent);
}

// A widget that is raised keeps its place.
void UsageCounter::seeChildren(QWidget *widget, UIElement *parent)
{
    if (qobject_cast<QMenu *>(widget) || qobject_cast<QMenuBar *>(widget))
        seeActions(widget, parent);
    for (QObject *object : inCreationOrder(widget->children())) {
        auto *child = qobject_cast<QWidget *>(object);
        if (child && !isWindowElement(child) && !(child->isWindow() && isPassing(child)))
            seeWidget(child, parent);
    }
}

// The menu of a button has elements of its own; that of a text field is the toolkit's.
void UsageCounter::seeParts(QWidget *widget, UIElement *owner)
{
    const bool isButton = qobject_cast<QAbstractButton *>(widget) != nullptr;
    const auto children = widget->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (owner && isButton && qobject_cast<QMenu *>(child)) {
            seeWidget(child, owner);
            continue;
        }
        m_seen.insert(child, {child, owner, false});
        for (QWidget *part : child->findChildren<QWidget *>())
            m_seen.insert(part, {part, owner, false});
    }
}

// Those that open a menu are elements by the items of that one.
void UsageCounter::seeActions(QWidget *menu, UIElement *parent)
{
    const QList<QAction *> actions = menu->actions();
    for (QAction *action : actions) {
        if (action->isSeparator() || action->menu())
            continue;
        elementFor(action, parent)->registerEvent(chooseEvent());
    }
}

void UsageCounter::seeTabs(QTabBar *bar, UIElement *element)
{
    for (int i = 0; i < bar->count(); ++i)
        makeTab(bar, i, element);
}

UIElement *UsageCounter::makeTab(QTabBar *bar, int index, UIElement *element)
{
    UIElement *tab = childOfClass(element, QStringLiteral("tab \"%1\"").arg(bar->tabText(index)));
    tab->setStandardType(StandardType(QStringLiteral("tab")));
    tab->setText(bar->tabText(index));
    tab->registerEvent(chooseEvent());
    return tab;
}

void UsageCounter::connectSignals(QWidget *widget, UIElement *element)
{
    if (auto *box = qobject_cast<QComboBox *>(widget)) {
        connect(box, QOverload<int>::of(&QComboBox::activated), this,
                [element] { addUsage(element, chooseEvent()); });
    } else if (auto *bar = qobject_cast<QTabBar *>(widget)) {
        connect(bar, &QTabBar::tabBarClicked, this, [this, bar, element](int index) {
            if (index >= 0)
                addUsage(makeTab(bar, index, element), chooseEvent());
        });
    }
}

UIElement *UsageCounter::elementFor(QObject *object, UIElement *parent)
{
    if (isElement(object))
        return m_seen.value(object).element;
    const QString className = QString::fromLatin1(object->metaObject()->className());
    const QString name = object->objectName();
    const bool isWindow = parent == &m_root;
    UIElement *element = nullptr;
    if (isWindow && name.isEmpty()) {
        element = elementForUnnamed(object, className);
    } else {
        const int number = takeNumber(object, parent, className);
        element =
            childOfClass(parent, name.isEmpty() ? QStringLiteral("%1 %2").arg(className).arg(number)
                                                : QStringLiteral("%1 \"%2\"").arg(className, name));
    }
    element->setStandardType(standardTypeOf(object));
    element->setWindowNode(isWindow);
    element->setText(steadyTextOf(object));
    element->setGeometry(ElementGeometry(placeOf(object)));
    m_seen.insert(object, {object, element, true});
    return element;
}

// The lowest that no living object has: two that are there together never share an element, and
// one that is made again goes on with that of the one before.
int UsageCounter::takeNumber(QObject *object, const UIElement *parent, const QString &className)
{
    std::vector<QPointer<QObject>> &owners = m_numbers[{parent, className}];
    const auto free = std::find_if(owners.begin(), owners.end(),
                                   [](const QPointer<QObject> &owner) { return !owner; });
    const auto index = free - owners.begin();
    if (free == owners.end())
        owners.emplace_back(object);
    else
        *free = object;
    return static_cast<int>(index) + 1;
}

// Windows come and go: only those that are there at the same time have numbers.
UIElement *UsageCounter::elementForUnnamed(QObject *window, const QString &className)
{
    const QString key = className + distinctionOfUnnamed(*static_cast<QWidget *>(window));
    UIElement *element = childOfClass(&m_root, key);
    for (int number = 2; m_unnamedWindows.value(element); ++number)
        element = childOfClass(&m_root, QStringLiteral("%1 %2").arg(key, QString::number(number)));
    m_unnamedWindows.insert(element, window);
    return element;
}

UIElement *UsageCounter::childOfClass(UIElement *parent, const QString &className)
{
    const QList<UIElement *> children = parent->children();
    const auto found =
        std::find_if(children.begin(), children.end(), [&className](const UIElement *child) {
            return child->concreteType() == className;
        });
    if (found != children.end())
        return *found;
    auto *element = new UIElement(QString(), StandardType(), className);
    parent->addChild(element);
    return element;
}

void UsageCounter::forgetDeletedObjects()
{
    if (m_seen.size() < m_cleanUpAt)
        return;
    for (auto it = m_seen.begin(); it != m_seen.end();)
        it = it->object ? std::next(it) : m_seen.erase(it);
    m_cleanUpAt = qMax(1024, 2 * m_seen.size());
}

} // namespace Morvex
