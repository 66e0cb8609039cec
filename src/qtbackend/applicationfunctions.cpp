#include "qtbackend/applicationfunctions.h"

#include "qtbackend/elementdump.h"
#include "qtbackend/elementfilter.h"
#include "qtbackend/items.h"
#include "qtbackend/pictures.h"
#include "qtbackend/qtmodel.h"
#include "qtbackend/usagecounter.h"
#include "qtbackend/userinput.h"

#include <QBuffer>

namespace Morvex {
namespace {

using Function = QVariant (*)(QtModel &model, const QVariantList &arguments, QString *error);

const char dumpFollows = char(0xc5);
const char errorFollows = 0;

QObject *firstObject(QtModel &model, const QVariantList &arguments, QString *error)
{
    QObject *object = model.registry().object(arguments.value(0).toInt());
    if (!object)
        *error = QStringLiteral("there is no object with this id");
    return object;
}

QVariant done(const QString &outcome, QString *error)
{
    *error = outcome;
    return outcome.isEmpty() ? QVariant(true) : QVariant();
}

QVariant desktopScreenshot(QtModel &model, const QVariantList &, QString *error)
{
    const QVariant picture = grabDesktop(model.allObjects()).toVariant();
    if (!picture.isValid())
        *error = QStringLiteral("there is no screen");
    return picture;
}

// Arguments: id, options (none are known yet), delay.
QVariant grabObjectScreenshot(QtModel &model, const QVariantList &arguments, QString *error)
{
    QObject *object = firstObject(model, arguments, error);
    return object ? grabScreenshot(object, arguments.value(2).toInt(), error).toVariant()
                  : QVariant();
}

QVariant getPixmapAsImage(QtModel &model, const QVariantList &arguments, QString *error)
{
    const QImage image = model.registry().image(arguments.value(0).toInt());
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, "PNG")) {
        *error = QStringLiteral("there is no picture with this id");
        return {};
    }
    return buffer.data();
}

QByteArray dumpError(const QString &text)
{
    return QByteArray(1, errorFollows) + text.toUtf8();
}

// Arguments: id, filters.
QVariant dumpObject(QtModel &model, const QVariantList &arguments, QString *error)
{
    QObject *object = firstObject(model, arguments, error);
    if (!object)
        return dumpError(*error);
    if (!object->isWidgetType())
        return dumpError(QStringLiteral("The object is not a widget"));
    ElementFilter filter;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString reason = filter.add(arguments.at(i).toByteArray());
        if (!reason.isEmpty())
            return dumpError(QStringLiteral("Filter %1, %2").arg(QString::number(i), reason));
    }
    return QByteArray(1, dumpFollows) + dumpElements(model, object, filter);
}

QVariant countUsage(QtModel &model, const QVariantList &, QString *)
{
    model.usageCounter();
    return true;
}

QVariant dumpUsage(QtModel &model, const QVariantList &, QString *)
{
    return QByteArray(1, dumpFollows) + model.usageCounter().dump();
}

// Arguments: id, and none or both of x and y.
QVariant click(QtModel &model, const QVariantList &arguments, QString *error)
{
    QObject *object = firstObject(model, arguments, error);
    if (!object)
        return {};
    std::optional<QPoint> place;
    if (arguments.size() == 3)
        place = QPoint(arguments.at(1).toInt(), arguments.at(2).toInt());
    return done(clickObject(object, place), error);
}

QVariant type(QtModel &model, const QVariantList &arguments, QString *error)
{
    QObject *object = firstObject(model, arguments, error);
    return object ? done(typeText(object, arguments.value(1).toString()), error) : QVariant();
}

// Arguments: id, action, and the selector.
QVariant useItemOf(QtModel &model, const QVariantList &arguments, QString *error)
{
    QObject *object = firstObject(model, arguments, error);
    return object ? done(useItem(object, arguments.value(1).toString(), arguments.mid(2)), error)
                  : QVariant();
}

// Arguments: id and the selector.
QVariant hasItemOf(QtModel &model, const QVariantList &arguments, QString *error)
{
    QObject *object = firstObject(model, arguments, error);
    return object ? QVariant(hasItem(object, arguments.mid(1))) : QVariant();
}

QVariant textOfItem(QtModel &model, const QVariantList &arguments, QString *error)
{
    QObject *object = firstObject(model, arguments, error);
    return object ? QVariant(itemText(object, arguments.mid(1), error)) : QVariant();
}

const struct
{
    const char *name;
    Function function;
} functions[] = {
    {"desktopScreenshot", desktopScreenshot},
    {"grabObjectScreenshot", grabObjectScreenshot},
    {"getPixmapAsImage", getPixmapAsImage},
    {"dumpObject", dumpObject},
    {"countUsage", countUsage},
    {"dumpUsage", dumpUsage},
    {"clickObject", click},
    {"typeText", type},
    {"useItem", useItemOf},
    {"hasItem", hasItemOf},
    {"itemText", textOfItem},
};

} // namespace

QVariant callApplicationFunction(QtModel &model, const QString &name, const QVariantList &arguments,
                                 QString *error)
{
    for (const auto &known : functions) {
        if (name == QLatin1String(known.name))
            return known.function(model, arguments, error);
    }
    *error = QStringLiteral("there is no function '%1'").arg(name);
    return {};
}

} // namespace Morvex
