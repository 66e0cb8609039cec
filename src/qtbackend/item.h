#pragma once

#include <QRect>
#include <QString>
#include <QVariant>

#include <memory>

class QWidget;

namespace Morvex {

class InputSequence;

/// A part of a widget that is no object of its own, such as a cell, or an entry of a list of Qt
/// Quick.
class Item
{
public:
    virtual ~Item() = default;

    /// Why there is no such item, or more than one, and what there is; empty when there is one.
    virtual QString error() const = 0;

    // The rest for an item that is there.

    virtual QString text() const = 0;
    /// What else can be asked: truth values and numbers by their names.
    virtual QVariantMap properties() const = 0;

    /// Why a user can't do anything to it now; empty when nothing is in the way.
    virtual QString whyBlocked() const;
    /// Adds what has to be done until it can be seen.
    virtual void reveal(InputSequence &input) = 0;
    /// Closes again what was opened for it.
    virtual void conceal() {}
    /// In which it is, once it can be seen. Null when that no longer exists.
    virtual QWidget *widget() const = 0;
    /// Of Qt Quick the item that shows it, once it can be seen; null for what is in a widget.
    virtual QObject *sceneItem() const { return nullptr; }
    /// Where it is in the widget, or the item that shows it. Empty when it can't be seen, or is all
    /// of that item.
    virtual QRect place() const = 0;

    /// Whether another one of the same widget takes its place when it is dragged over the middle of
    /// this one.
    virtual bool isInBar() const { return false; }

    /// Adds what is done to it, other than with the mouse alone: "expand", "collapse", "toggle",
    /// "check", "uncheck", "edit". Returns an error text, empty on success.
    [[nodiscard]] virtual QString use(const QString &action, const QVariant &value,
                                      InputSequence &input);
};

/// The text for an item that doesn't know an action.
QString unknownAction(const QString &action);

/// Null, with an error text, when the object has no such item.
std::shared_ptr<Item> existingItem(QObject *object, const QVariantList &selector, QString *error);

} // namespace Morvex
