#pragma once

#include <QPointer>
#include <QVariant>

#include <vector>

namespace Morvex {

// What users change in items of Qt Quick by moving the mouse or by clicking in some part of them:
// the values of sliders, dials and spin boxes, pages, and the sizes of what a view is split into.

/// One of the values of an item, as it was.
struct SceneValue
{
    /// What a script names.
    QPointer<QObject> item;
    /// By which a script sets it.
    QString property;
    /// What keeps it, under a name of its own.
    QPointer<QObject> keeper;
    const char *keptProperty = nullptr;
    QVariant kept;

    bool isChanged() const;
    /// How a script brings it to what it is now, as docs/application-protocol.md has it.
    QVariantMap setting() const;
};

/// None for other items.
std::vector<SceneValue> sceneValuesOf(QObject *item);

/// The property of an item with one value alone; null for other items.
const char *sceneValueOf(const QObject *item);

/// How a script sets the property of the item to its value, without the digits that nobody would
/// write: what is less than a tenth of a pixel on the screen.
QVariantMap sceneSetting(const QObject *item, const QString &property, const QVariant &value);

bool isSceneValue(const QObject *object, const QByteArray &property);

/// Sets one as a user does who presses the item and releases it. False for a value that the
/// property does not take.
bool setSceneValue(QObject *object, const QByteArray &property, const QVariant &value);

} // namespace Morvex
