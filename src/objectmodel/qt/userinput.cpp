#include "objectmodel/qt/userinput.h"

#include "objectmodel/qt/turneventloop.h"

#include <QAbstractScrollArea>
#include <QAction>
#include <QCoreApplication>
#include <QDateTime>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMouseEvent>
#include <QPointer>
#include <QWidget>

namespace Morvex {
namespace {

QString obstacle(const QObject *object)
{
    if (!object->isWidgetType())
        return QStringLiteral("the object is no widget");
    const auto *widget = static_cast<const QWidget *>(object);
    if (!widget->isVisible())
        return QStringLiteral("the widget is not visible");
    return widget->isEnabled() ? QString() : QStringLiteral("the widget is disabled");
}

void sendMouse(QWidget *widget, QEvent::Type type, const QPoint &place, Qt::MouseButtons buttons)
{
    QMouseEvent event(type, place, widget->mapTo(widget->window(), place),
                      widget->mapToGlobal(place), Qt::LeftButton, buttons, Qt::NoModifier);
    event.setTimestamp(static_cast<ulong>(QDateTime::currentMSecsSinceEpoch()));
    QCoreApplication::sendEvent(widget, &event);
}

QString triggerAction(QAction *action)
{
    if (!action->isEnabled() || !action->isVisible())
        return QStringLiteral("the action is %1")
            .arg(action->isVisible() ? QLatin1String("disabled") : QLatin1String("not visible"));
    action->trigger();
    turnEventLoop(0);
    return {};
}

struct Key
{
    int key = 0;
    Qt::KeyboardModifiers modifiers;
    QString text;
};

Key keyOfCharacter(QChar character)
{
    Key key;
    key.text = character;
    if (character == QLatin1Char('\n'))
        key.key = Qt::Key_Return;
    else if (character == QLatin1Char('\t'))
        key.key = Qt::Key_Tab;
    else
        key.key = character.toUpper().unicode();
    if (character.isUpper())
        key.modifiers = Qt::ShiftModifier;
    return key;
}

bool keyOfName(const QString &name, Key *key)
{
    const QKeySequence sequence = QKeySequence::fromString(name, QKeySequence::PortableText);
    if (sequence.count() != 1 || sequence[0] == Qt::Key_unknown)
        return false;
    key->key = static_cast<int>(sequence[0] & ~int(Qt::KeyboardModifierMask));
    key->modifiers = Qt::KeyboardModifiers(sequence[0] & int(Qt::KeyboardModifierMask));
    return true;
}

QString keysOf(const QString &text, std::vector<Key> *keys)
{
    for (int i = 0; i < text.size(); ++i) {
        if (text.at(i) != QLatin1Char('<')) {
            keys->push_back(keyOfCharacter(text.at(i)));
            continue;
        }
        if (text.midRef(i, 2) == QLatin1String("<<")) {
            keys->push_back(keyOfCharacter(text.at(i++)));
            continue;
        }
        const int end = text.indexOf(QLatin1Char('>'), i);
        const QString name = text.mid(i + 1, end - i - 1);
        Key key;
        if (end < 0 || !keyOfName(name, &key))
            return QStringLiteral("'<%1>' is no key; \"<\" is typed by \"<<\"").arg(name);
        keys->push_back(key);
        i = end;
    }
    return {};
}

void sendKey(QWidget *widget, QEvent::Type type, const Key &key)
{
    QKeyEvent event(type, key.key, key.modifiers, key.text);
    QCoreApplication::sendEvent(widget, &event);
}

} // namespace

QString clickObject(QObject *object, const std::optional<QPoint> &place)
{
    if (auto *action = qobject_cast<QAction *>(object))
        return triggerAction(action);
    const QString error = obstacle(object);
    if (!error.isEmpty())
        return error;
    auto *widget = static_cast<QWidget *>(object);
    // The content of a scroll area is a widget of its own.
    if (auto *area = qobject_cast<QAbstractScrollArea *>(widget))
        widget = area->viewport();
    const QPoint where = place.value_or(widget->rect().center());
    if (!widget->rect().contains(where))
        return QStringLiteral("%1,%2 lies outside of the widget").arg(where.x()).arg(where.y());
    const QPointer<QWidget> target = widget;
    if (target->focusPolicy() & Qt::ClickFocus)
        target->setFocus(Qt::MouseFocusReason);
    sendMouse(target, QEvent::MouseButtonPress, where, Qt::LeftButton);
    if (target)
        sendMouse(target, QEvent::MouseButtonRelease, where, Qt::NoButton);
    turnEventLoop(0);
    return {};
}

QString typeText(QObject *object, const QString &text)
{
    std::vector<Key> keys;
    QString error = obstacle(object);
    if (error.isEmpty())
        error = keysOf(text, &keys);
    if (!error.isEmpty())
        return error;
    const QPointer<QWidget> widget = static_cast<QWidget *>(object);
    widget->setFocus(Qt::OtherFocusReason);
    for (const Key &key : keys) {
        if (widget)
            sendKey(widget, QEvent::KeyPress, key);
        if (widget)
            sendKey(widget, QEvent::KeyRelease, key);
    }
    turnEventLoop(0);
    return {};
}

} // namespace Morvex
