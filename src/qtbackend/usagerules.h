#pragma once

#include <QString>

#include <vector>

class QAction;
class QObject;
class QPoint;
class QWidget;

namespace Morvex {

/// A kind of thing that users do to a widget, and what of the mouse and the keyboard does it.
struct UsageRule
{
    enum Keys { NoKeys, ActivatingKeys, AllKeys };

    QString event;
    bool isByMouse;
    Keys keys;
};

/// What users can do to the widget; nothing for what just shows or lays out.
std::vector<UsageRule> usageRulesOf(const QWidget *widget);

/// Whether what is in the widget is a part of it, and no element of its own to a user.
bool isOneElement(const QWidget *widget);

/// Whether the widget is an element also when users can do nothing to it, for what is inside.
bool isContainer(const QWidget *widget);

/// Whether the press of @p key, one of Qt::Key, is what the rule is about.
bool isByKey(const UsageRule &rule, int key);

/// What a release of the mouse at @p place of a menu or a menu bar chooses; null for nothing.
const QAction *actionAt(const QObject *object, const QPoint &place);

/// What the press of @p key chooses in a menu; null for nothing.
const QAction *actionFor(const QObject *object, int key);

} // namespace Morvex
