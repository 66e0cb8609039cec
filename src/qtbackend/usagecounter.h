#pragma once

#include "shared/uiabstraction/uielement.h"

#include <QEvent>
#include <QHash>
#include <QObject>
#include <QPair>
#include <QPointer>

#include <vector>

class QAction;
class QTabBar;
class QWidget;

namespace Morvex {

struct UsageRule;

/// Sent to an action that is chosen in a user's stead, without an event of its menu.
QEvent::Type choiceEventType();

/// Counts what users do to the elements of the application: to buttons, fields, menu items, tabs
/// and the like, not to labels and layouts. An element is known, with all that can be done to it,
/// from when its window was there, shown or not, and stays when the widget no longer exists; a
/// later widget in its place goes on with it.
///
/// So that trees of several runs can be merged, the class of an element distinguishes it from
/// others beside it: by its object name, or else by its number among those of its class that exist
/// at the same time, which it keeps; a window without a name by its title, or else by what is in
/// it, and by its number among such windows that exist at the same time.
/// Geometry is that on the screen when the element was first seen.
class UsageCounter : public QObject
{
public:
    UsageCounter();

    /// The windows that there are or were, in the stream form of UI elements: a count, then as many
    /// elements.
    QByteArray dump();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Seen
    {
        QPointer<QObject> object;
        // Null for what users can do nothing to.
        UIAbstraction::UIElement *element = nullptr;
        // Whether it is the element itself and no part of it.
        bool isOwn = false;
    };

    void observeAllWindows();
    void observeWindowOf(QWidget *widget);
    // @p parent is the element above.
    void seeWidget(QWidget *widget, UIAbstraction::UIElement *parent);
    void seeThrough(QWidget *widget, UIAbstraction::UIElement *parent);
    void seeChildren(QWidget *widget, UIAbstraction::UIElement *parent);
    void seeParts(QWidget *widget, UIAbstraction::UIElement *owner);
    void seeActions(QWidget *menu, UIAbstraction::UIElement *parent);
    void seeTabs(QTabBar *bar, UIAbstraction::UIElement *element);
    UIAbstraction::UIElement *elementFor(QObject *object, UIAbstraction::UIElement *parent);
    int takeNumber(QObject *object, const UIAbstraction::UIElement *parent,
                   const QString &className);
    UIAbstraction::UIElement *elementForUnnamed(QObject *window, const QString &className);
    UIAbstraction::UIElement *childOfClass(UIAbstraction::UIElement *parent,
                                           const QString &className);
    UIAbstraction::UIElement *makeTab(QTabBar *bar, int index, UIAbstraction::UIElement *element);
    void connectSignals(QWidget *widget, UIAbstraction::UIElement *element);
    UIAbstraction::UIElement *elementUnder(QWidget *widget);
    bool hasBecomeUsable(const QWidget *widget) const;
    bool isElement(const QObject *object) const;
    template <typename Fits>
    void count(QWidget *widget, const Fits &fits);
    bool isHandedOn(const QWidget *widget, ulong timestamp);
    void countChoice(const QAction *action);
    void forgetDeletedObjects();

    // Above all windows.
    UIAbstraction::UIElement m_root;
    QHash<const QObject *, Seen> m_seen;
    QHash<const UIAbstraction::UIElement *, QPointer<QObject>> m_unnamedWindows;
    // The objects that have them, by the element above and the class.
    QHash<QPair<const UIAbstraction::UIElement *, QString>, std::vector<QPointer<QObject>>>
        m_numbers;
    int m_cleanUpAt = 1024;
    QPointer<QWidget> m_lastReceiver;
    ulong m_lastTimestamp = 0;
};

} // namespace Morvex
