#include "qtbackend/items.h"

#include "qtbackend/inputsequence.h"
#include "qtbackend/links.h"
#include "qtbackend/menubutton.h"
#include "qtbackend/menuitem.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/sceneitem.h"
#include "qtbackend/scenelinks.h"
#include "qtbackend/simpleitems.h"
#include "qtbackend/userinput.h"
#include "qtbackend/viewitem.h"
#include "qtbackend/whyblocked.h"
#include "qtbackend/windowactivation.h"

#include <QMenu>
#include <QMenuBar>
#include <QTabWidget>
#include <QToolBar>

namespace Morvex {
namespace {

// Null for an item without others.
std::shared_ptr<Item> itemOfScene(QObject *object, const ItemSelector &wanted)
{
    if (SceneItem::isPossible(object))
        return std::make_shared<SceneItem>(object, wanted);
    return SceneLinkItem::isPossible(object) ? std::make_shared<SceneLinkItem>(object, wanted)
                                             : nullptr;
}

// Null for an object without items.
std::shared_ptr<Item> itemOf(QObject *object, const QVariantList &selector)
{
    const ItemSelector wanted = ItemSelector::of(selector);
    if (auto *header = qobject_cast<QHeaderView *>(object))
        return std::make_shared<HeaderItem>(header, wanted);
    if (auto *view = qobject_cast<QAbstractItemView *>(object))
        return std::make_shared<ViewItem>(view, wanted);
    if (auto *box = qobject_cast<QComboBox *>(object))
        return std::make_shared<ComboBoxItem>(box, wanted);
    if (auto *tabs = qobject_cast<QTabWidget *>(object))
        return std::make_shared<TabItem>(tabs->tabBar(), wanted);
    if (auto *bar = qobject_cast<QTabBar *>(object))
        return std::make_shared<TabItem>(bar, wanted);
    if (isSceneItem(object))
        return itemOfScene(object, wanted);
    auto *widget = qobject_cast<QWidget *>(object);
    if (qobject_cast<QMenuBar *>(object) || qobject_cast<QMenu *>(object) ||
        qobject_cast<QToolBar *>(object) || menuOfButton(object))
        return std::make_shared<MenuItem>(widget, wanted);
    if (!linksOf(object).empty())
        return std::make_shared<LinkItem>(widget, wanted);
    return widget ? std::make_shared<AccessibleItem>(widget, wanted) : nullptr;
}

QString clickItem(QObject *object, const QVariantList &selector, const QString &gesture,
                  InputSequence &input)
{
    MouseUse use;
    use.gesture = gesture;
    use.from = {object, selector, std::nullopt};
    return useMouse(use, input);
}

// Where a click does it.
QString clickUnless(bool isSo, QObject *object, const QVariantList &selector, InputSequence &input)
{
    return isSo ? QString() : clickItem(object, selector, QStringLiteral("click"), input);
}

} // namespace

QString Item::whyBlocked() const
{
    return widget() ? Morvex::whyBlocked(widget()) : QStringLiteral("the widget no longer exists");
}

QString unknownAction(const QString &action)
{
    return QStringLiteral("an item of this widget has no '%1'").arg(action);
}

QString Item::use(const QString &action, const QVariant &, InputSequence &)
{
    return unknownAction(action);
}

std::shared_ptr<Item> existingItem(QObject *object, const QVariantList &selector, QString *error)
{
    const std::shared_ptr<Item> item = itemOf(object, selector);
    *error = item ? item->error()
                  : QStringLiteral("%1 has no items")
                        .arg(QString::fromLatin1(object->metaObject()->className()));
    return error->isEmpty() ? item : nullptr;
}

bool hasItem(QObject *object, const QVariantList &selector)
{
    const auto item = itemOf(object, selector);
    return item && item->error().isEmpty();
}

QVariantMap itemProperties(QObject *object, const QVariantList &selector, QString *error)
{
    const auto item = existingItem(object, selector, error);
    if (!item)
        return {};
    QVariantMap properties = item->properties();
    properties[QStringLiteral("text")] = item->text();
    return properties;
}

QString useItem(QObject *object, const QString &action, const QVariantList &selector,
                const QVariant &value, InputSequence &input)
{
    QString error;
    const auto item = existingItem(object, selector, &error);
    if (error.isEmpty())
        error = item->whyBlocked();
    if (!error.isEmpty())
        return error;
    if (action == QLatin1String("click") || action == QLatin1String("doubleClick"))
        return clickItem(object, selector, action, input);
    const QVariantMap properties = item->properties();
    if (action == QLatin1String("select"))
        return clickUnless(properties.value(QStringLiteral("selected")).toBool(), object, selector,
                           input);
    if (action == QLatin1String("activate")) {
        error = clickItem(object, selector, QStringLiteral("click"), input);
        return error.isEmpty() ? typeText(object, QStringLiteral("<Return>"), input) : error;
    }
    const bool isChecking = action == QLatin1String("check") || action == QLatin1String("uncheck");
    const bool isView = qobject_cast<QAbstractItemView *>(object);
    const QVariant checked = properties.value(QStringLiteral("checked"));
    if (isChecking && !isView && checked.isValid())
        return clickUnless(checked.toBool() == (action == QLatin1String("check")), object, selector,
                           input);
    waitForActiveWindow(object, input);
    return item->use(action, value, input);
}

} // namespace Morvex
