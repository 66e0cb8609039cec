#pragma once

#include "morvex_export.h"

#include <QList>
#include <QObject>

namespace Morvex::UIAbstraction {

class UIElement;

/// A flat list of elements, which it doesn't own: clearAndDeleteElements alone deletes them.
class MORVEX_EXPORT ElementStore : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    bool isEmpty() const { return m_elements.isEmpty(); }
    QList<UIElement *> elements() const { return m_elements; }
    bool contains(UIElement *element) const;
    bool contains(const QString &id) const;
    /// The first one of that id; null when there is none.
    UIElement *elementById(const QString &id) const;
    /// Those without a parent, in the order in which they were added.
    QList<UIElement *> topLevelElements() const;

    void addElement(UIElement *element);
    /// Deletes the elements without a parent, and with them all below.
    void clearAndDeleteElements();

Q_SIGNALS:
    void elementAdded(const Morvex::UIAbstraction::UIElement *element);

private:
    QList<UIElement *> m_elements;
};

} // namespace Morvex::UIAbstraction
