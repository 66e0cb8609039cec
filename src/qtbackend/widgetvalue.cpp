#include "qtbackend/widgetvalue.h"

#include "qtbackend/itemselectors.h"
#include "qtbackend/ownclass.h"
#include "qtbackend/recordedkeys.h"

#include <QAbstractScrollArea>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QScrollBar>
#include <QTabBar>

namespace Morvex {
namespace {

// As scripts take it, and as it gets out of the application.
QVariant shownValue(const QVariant &value)
{
    const auto format = [](const QTime &time) {
        return time.msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs;
    };
    if (value.userType() == QMetaType::QDate)
        return value.toDate().toString(Qt::ISODate);
    if (value.userType() == QMetaType::QTime)
        return value.toTime().toString(format(value.toTime()));
    if (value.userType() == QMetaType::QDateTime)
        return value.toDateTime().toString(format(value.toDateTime().time()));
    return value;
}

} // namespace

bool isSlider(const QObject *object)
{
    const QObject *parent = object->parent();
    const bool isOfArea = qobject_cast<const QAbstractScrollArea *>(parent) ||
                          (parent && qobject_cast<const QAbstractScrollArea *>(parent->parent()));
    // So has a widget of the application that scrolls what it draws.
    const auto *around = qobject_cast<const QWidget *>(parent);
    const bool isOfOwn = around && isOfOwnClass(around) && !around->layout();
    return qobject_cast<const QAbstractSlider *>(object) &&
           !((isOfArea || isOfOwn) && qobject_cast<const QScrollBar *>(object));
}

const char *valuePropertyOf(const QWidget *widget)
{
    if (qobject_cast<const QDateEdit *>(widget))
        return "date";
    if (qobject_cast<const QTimeEdit *>(widget))
        return "time";
    if (qobject_cast<const QDateTimeEdit *>(widget))
        return "dateTime";
    const bool isNumber = isSlider(widget) || qobject_cast<const QAbstractSpinBox *>(widget);
    return isNumber && widget->property("value").isValid() ? "value" : "";
}

QVariant valueOf(const QWidget *widget)
{
    if (const auto *box = qobject_cast<const QComboBox *>(widget))
        return box->currentIndex();
    if (const auto *bar = qobject_cast<const QTabBar *>(widget))
        return bar->currentIndex();
    const QByteArray property = valuePropertyOf(widget);
    if (property.isEmpty() && qobject_cast<const QAbstractSpinBox *>(widget))
        return widget->property("text");
    return property.isEmpty() ? QVariant() : widget->property(property);
}

ValueSetting ValueSetting::of(QWidget *widget)
{
    ValueSetting setting{QStringLiteral("click"), {}, widget};
    const QString item = QStringLiteral("item");
    const QByteArray property = valuePropertyOf(widget);
    if (auto *box = qobject_cast<QComboBox *>(widget)) {
        setting.more[item] = selectorOf(box, box->currentIndex());
    } else if (auto *bar = qobject_cast<QTabBar *>(widget)) {
        setting.object = tabsOf(bar);
        setting.more[item] = selectorOf(bar, bar->currentIndex());
    } else if (property.isEmpty()) {
        setting.what = QStringLiteral("type");
        setting.more[QStringLiteral("text")] =
            QLatin1String("<Ctrl+A>") + typedTextOf(widget->property("text").toString());
    } else {
        setting.what = QStringLiteral("set");
        setting.more[QStringLiteral("property")] = QString::fromLatin1(property);
        setting.more[QStringLiteral("value")] = shownValue(widget->property(property));
    }
    return setting;
}

} // namespace Morvex
