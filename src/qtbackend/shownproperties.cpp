#include "qtbackend/shownproperties.h"

#include "qtbackend/longlist.h"
#include "qtbackend/showncells.h"

#include <QComboBox>
#include <QHeaderView>
#include <QStatusBar>
#include <QTabBar>

namespace Morvex {
namespace {

// Lists of fonts and the like go on for long.
const int maxItems = 1000;

template <typename TextOf>
QString linesOf(int count, const TextOf &textOf)
{
    LongList lines(maxItems);
    for (int i = 0; i < count; ++i)
        lines.add([&] { return textOf(i); });
    return lines.text();
}

QString cells(const QObject *object)
{
    return shownCells(static_cast<const QAbstractItemView *>(object));
}

QString sections(const QObject *object)
{
    return shownSections(static_cast<const QHeaderView *>(object));
}

QString tabs(const QObject *object)
{
    const auto *bar = static_cast<const QTabBar *>(object);
    return linesOf(bar->count(), [bar](int i) { return bar->tabText(i); });
}

QString items(const QObject *object)
{
    const auto *box = static_cast<const QComboBox *>(object);
    return linesOf(box->count(), [box](int i) { return box->itemText(i); });
}

QString message(const QObject *object)
{
    return static_cast<const QStatusBar *>(object)->currentMessage();
}

// A header before what it derives from.
const struct
{
    const QMetaObject *metaObject;
    const char *name;
    QString (*textOf)(const QObject *object);
} properties[] = {
    {&QHeaderView::staticMetaObject, "sections", sections},
    {&QAbstractItemView::staticMetaObject, "cells", cells},
    {&QTabBar::staticMetaObject, "tabs", tabs},
    {&QComboBox::staticMetaObject, "items", items},
    {&QStatusBar::staticMetaObject, "message", message},
};

} // namespace

QStringList shownPropertyNames(const QObject *object)
{
    for (const auto &property : properties) {
        if (object->metaObject()->inherits(property.metaObject))
            return {QLatin1String(property.name)};
    }
    return {};
}

QString shownProperty(const QObject *object, const QString &name)
{
    for (const auto &property : properties) {
        if (object->metaObject()->inherits(property.metaObject))
            return name == QLatin1String(property.name) ? property.textOf(object) : QString();
    }
    return {};
}

} // namespace Morvex
