#include "qtbackend/applicationfunctions.h"

#include "objectmodel/class.h"
#include "objectmodel/property.h"
#include "qtbackend/clickwatch.h"
#include "qtbackend/completions.h"
#include "qtbackend/elementdump.h"
#include "qtbackend/elementfilter.h"
#include "qtbackend/identification.h"
#include "qtbackend/inputsequence.h"
#include "qtbackend/items.h"
#include "qtbackend/mouseway.h"
#include "qtbackend/nameresolver.h"
#include "qtbackend/nametree.h"
#include "qtbackend/pictures.h"
#include "qtbackend/qtmodel.h"
#include "qtbackend/toolbarextension.h"
#include "qtbackend/usagecounter.h"
#include "qtbackend/userinput.h"
#include "qtbackend/whyblocked.h"

#include <QBuffer>
#include <QMenu>
#include <QPointer>

namespace Morvex {
namespace {

// What a function reads, and where it leaves what takes turns of the event loop.
struct Call
{
    const QVariantList &arguments;
    InputSequence &input;
};

using Function = QVariant (*)(QtModel &model, const Call &call, QString *error);

const char dumpFollows = char(0xc5);
const char errorFollows = 0;
// A button may be pressed by its key for a tenth of a second before it does anything.
const int maxUnusableMs = 1000;
// One that shows how far something is closes by itself, and users wait for that as for objects.
const int maxDialogMs = 10000;
// To compress takes far longer than to send, and the application waits for it.
const int uncompressed = 100;

QObject *firstObject(QtModel &model, const Call &call, QString *error)
{
    QObject *object = model.registry().object(call.arguments.value(0).toInt());
    if (!object)
        *error = QStringLiteral("there is no object with this id");
    return object;
}

// What a user is about to use.
QObject *usedObject(QtModel &model, const Call &call, QString *error)
{
    QObject *object = firstObject(model, call, error);
    if (!object)
        return nullptr;
    leaveCompletions(object);
    // The application may have ended it when the list closed.
    object = firstObject(model, call, error);
    return object ? reachInToolBar(object) : nullptr;
}

QVariant done(const QString &outcome, QString *error)
{
    *error = outcome;
    return outcome.isEmpty() ? QVariant(true) : QVariant();
}

QVariant desktopScreenshot(QtModel &model, const Call &, QString *error)
{
    const QVariant picture = rawPicture(grabDesktop(model.allObjects()));
    if (!picture.isValid())
        *error = QStringLiteral("there is no screen");
    return picture;
}

// Arguments: id, options (none are known yet), delay.
QVariant grabObjectScreenshot(QtModel &model, const Call &call, QString *error)
{
    QObject *object = firstObject(model, call, error);
    return object ? rawPicture(grabScreenshot(object, call.arguments.value(2).toInt(), error))
                  : QVariant();
}

QVariant getPixmapAsImage(QtModel &model, const Call &call, QString *error)
{
    const QImage image = model.registry().image(call.arguments.value(0).toInt());
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&buffer, "PNG", uncompressed)) {
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
QVariant dumpObject(QtModel &model, const Call &call, QString *error)
{
    QObject *object = firstObject(model, call, error);
    if (!object)
        return dumpError(*error);
    if (!object->isWidgetType())
        return dumpError(QStringLiteral("The object is not a widget"));
    ElementFilter filter;
    for (int i = 1; i < call.arguments.size(); ++i) {
        const QString reason = filter.add(call.arguments.at(i).toByteArray());
        if (!reason.isEmpty())
            return dumpError(QStringLiteral("Filter %1, %2").arg(QString::number(i), reason));
    }
    return QByteArray(1, dumpFollows) + dumpElements(model, object, filter);
}

QVariant countUsage(QtModel &model, const Call &, QString *)
{
    model.usageCounter();
    return true;
}

QVariant dumpUsage(QtModel &model, const Call &, QString *)
{
    if (!model.isUsageCounted())
        return dumpError(QStringLiteral("The application did not count what users do."));
    return QByteArray(1, dumpFollows) + model.usageCounter().dump();
}

// With the keys "object", "item", and both of "x" and "y".
MouseTarget::Place placeOf(QtModel &model, QObject *object, const QVariantMap &options)
{
    MouseTarget::Place place;
    place.object = options.contains(QStringLiteral("object"))
                       ? model.registry().object(options[QStringLiteral("object")].toInt())
                       : object;
    place.item = options.value(QStringLiteral("item")).toList();
    if (options.contains(QStringLiteral("x")))
        place.place =
            QPoint(options[QStringLiteral("x")].toInt(), options[QStringLiteral("y")].toInt());
    return place;
}

// Arguments: id, gesture, options: those of the place, "button" and "modifiers" as numbers of the
// toolkit, "hold" for a click, "right" and "down" for the wheel, "to", with those of the place
// where a drag ends, and "via", the corners of its way.
QVariant mouse(QtModel &model, const Call &call, QString *error)
{
    QObject *object = usedObject(model, call, error);
    if (!object)
        return {};
    const QVariantMap options = call.arguments.value(2).toMap();
    MouseUse use;
    use.gesture = call.arguments.value(1).toString();
    use.from = placeOf(model, object, options);
    use.to = placeOf(model, object, options.value(QStringLiteral("to")).toMap());
    use.via = cornersOf(options.value(QStringLiteral("via")).toString());
    use.button = static_cast<Qt::MouseButton>(
        options.value(QStringLiteral("button"), int(Qt::LeftButton)).toInt());
    use.modifiers = Qt::KeyboardModifiers(options.value(QStringLiteral("modifiers")).toInt());
    use.hold = options.value(QStringLiteral("hold")).toInt();
    use.wheel = QPointF(options.value(QStringLiteral("right")).toDouble(),
                        options.value(QStringLiteral("down")).toDouble());
    if (use.from.object && use.to.object)
        return done(useMouse(use, call.input), error);
    *error = QStringLiteral("the object no longer exists");
    return {};
}

// Arguments: id, and none or both of x and y.
QVariant click(QtModel &model, const Call &call, QString *error)
{
    QObject *object = usedObject(model, call, error);
    if (!object)
        return {};
    MouseUse use;
    use.gesture = QStringLiteral("click");
    use.from.object = object;
    if (call.arguments.size() == 3)
        use.from.place = QPoint(call.arguments.at(1).toInt(), call.arguments.at(2).toInt());
    return done(useMouse(use, call.input), error);
}

QVariant type(QtModel &model, const Call &call, QString *error)
{
    QObject *object = usedObject(model, call, error);
    return object ? done(typeText(object, call.arguments.value(1).toString(), call.input), error)
                  : QVariant();
}

QVariant close(QtModel &model, const Call &call, QString *error)
{
    QObject *object = usedObject(model, call, error);
    return object ? done(closeWindow(object, call.input), error) : QVariant();
}

// Arguments: id, action, selector, and what an edit is to write.
QVariant useItemOf(QtModel &model, const Call &call, QString *error)
{
    QObject *object = usedObject(model, call, error);
    return object ? done(useItem(object, call.arguments.value(1).toString(),
                                 call.arguments.value(2).toList(), call.arguments.value(3),
                                 call.input),
                         error)
                  : QVariant();
}

// Arguments: id and the selector.
QVariant hasItemOf(QtModel &model, const Call &call, QString *error)
{
    QObject *object = firstObject(model, call, error);
    return object ? QVariant(hasItem(object, call.arguments.value(1).toList())) : QVariant();
}

QVariant propertiesOfItem(QtModel &model, const Call &call, QString *error)
{
    QObject *object = firstObject(model, call, error);
    return object ? QVariant(itemProperties(object, call.arguments.value(1).toList(), error))
                  : QVariant();
}

QVariant refsOf(QtModel &model, const std::vector<QObject *> &objects)
{
    QVariantList refs;
    for (QObject *object : objects)
        refs += QVariant(QVariantList{model.registry().idOf(object), realNameOf(object)});
    return refs;
}

// Argument: a name. The answer is a list of pairs of an id and a name.
QVariant findAll(QtModel &model, const Call &call, QString *error)
{
    return refsOf(model, NameResolver(model).findAll(call.arguments.value(0).toString(), error));
}

// Argument: id. The answer is as that of findAll.
QVariant children(QtModel &model, const Call &call, QString *error)
{
    QObject *object = firstObject(model, call, error);
    return object ? refsOf(model, model.childrenOf(object)) : QVariant();
}

QVariant tree(QtModel &model, const Call &, QString *)
{
    return nameTree(model);
}

// The first call begins to watch. The answer is as that of findAll.
QVariant takeClicked(QtModel &model, const Call &, QString *)
{
    NameResolver resolver(model);
    QVariantList refs;
    for (QObject *object : model.clickWatch().takeClicked())
        refs += QVariant(QVariantList{model.registry().idOf(object), resolver.uniqueName(object)});
    return refs;
}

// Argument: id. The answer is a map of values, of texts where a value can't travel.
QVariant objectProperties(QtModel &model, const Call &call, QString *error)
{
    QObject *object = firstObject(model, call, error);
    if (!object)
        return {};
    const SharedPtr<Object> wrapped = model.wrap(object);
    const Class *known = wrapped->objectClass();
    QVariantMap properties;
    for (const QString &name : known->propertyNames()) {
        const SharedPtr<Object> value = known->property(name)->get(wrapped);
        if (!value)
            continue;
        const bool isPlain = value->value().userType() == QMetaType::Bool ||
                             value->value().toString() == value->valueText();
        properties[name] = isPlain ? value->value() : QVariant(value->valueText());
    }
    return properties;
}

// Arguments: id, property.
QVariant isSecretOf(QtModel &model, const Call &call, QString *error)
{
    QObject *object = firstObject(model, call, error);
    return object ? QVariant(isSecret(object, call.arguments.value(1).toString())) : QVariant();
}

const struct
{
    const char *name;
    Function function;
    // What a user does to an object, which waits a moment until that can be used.
    bool isUse = false;
} functions[] = {
    {"desktopScreenshot", desktopScreenshot},
    {"grabObjectScreenshot", grabObjectScreenshot},
    {"getPixmapAsImage", getPixmapAsImage},
    {"dumpObject", dumpObject},
    {"countUsage", countUsage},
    {"dumpUsage", dumpUsage},
    {"clickObject", click, true},
    {"useMouse", mouse, true},
    {"findAll", findAll},
    {"children", children},
    {"objectProperties", objectProperties},
    {"isSecret", isSecretOf},
    {"nameTree", tree},
    {"takeClicked", takeClicked},
    {"typeText", type, true},
    {"closeWindow", close},
    {"useItem", useItemOf, true},
    {"hasItem", hasItemOf},
    {"itemProperties", propertiesOfItem},
};

// Menus and what a tool bar has no room for are shown when they are used.
bool isStillToBeUsable(const QObject *object)
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget && !(widget->isVisible() && widget->isEnabled()) && !isInToolBar(widget) &&
           !qobject_cast<const QMenu *>(widget);
}

bool isToBeFreed(const QObject *object)
{
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget && isBlockedByDialog(widget);
}

void callWhenUsable(Function function, QtModel &model, const Call &call)
{
    const QPointer<QObject> object = model.registry().object(call.arguments.value(0).toInt());
    call.input.waitUntil([object] { return !isToBeFreed(object); }, maxDialogMs);
    call.input.waitUntil([object] { return !isStillToBeUsable(object); }, maxUnusableMs);
    call.input.add([function, &model, arguments = call.arguments, &input = call.input] {
        QString error;
        function(model, {arguments, input}, &error);
        return error;
    });
}

} // namespace

QVariant callApplicationFunction(QtModel &model, const QString &name, const QVariantList &arguments,
                                 InputSequence &input, QString *error)
{
    for (const auto &known : functions) {
        if (name != QLatin1String(known.name))
            continue;
        const Call call{arguments, input};
        QObject *object =
            known.isUse ? model.registry().object(arguments.value(0).toInt()) : nullptr;
        if (!isStillToBeUsable(object) && !isToBeFreed(object))
            return known.function(model, call, error);
        callWhenUsable(known.function, model, call);
        return true;
    }
    *error = QStringLiteral("there is no function '%1'").arg(name);
    return {};
}

} // namespace Morvex
