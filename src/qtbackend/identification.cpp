#include "qtbackend/identification.h"

#include "objectmodel/objectname.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/sceneaccess.h"
#include "qtbackend/secretinputs.h"

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QLineEdit>
#include <QMetaProperty>
#include <QVariant>

#include <algorithm>
#include <iterator>

namespace Morvex {
namespace {

const char *const labels[] = {"text", "title", "windowTitle"};

const char *const secrets[] = {"text", "selectedText", "textValue", "currentText"};

// The toolkit marks what a widget is there to edit as its user property, and nothing of Qt Quick.
bool isTyped(const QObject *object, const char *property)
{
    const QMetaObject *metaObject = object->metaObject();
    return metaObject->property(metaObject->indexOfProperty(property)).isUser() ||
           qobject_cast<const QAbstractSpinBox *>(object) || object->inherits("QQuickTextInput") ||
           object->inherits("QQuickTextEdit");
}

// What shows the value of the property as dots; null when it is no secret.
const QObject *hiderOf(const QObject *object, const QString &property)
{
    const bool isText =
        std::any_of(std::begin(secrets), std::end(secrets),
                    [&property](const char *secret) { return property == QLatin1String(secret); });
    const auto *box = qobject_cast<const QComboBox *>(object);
    const QObject *editor = box && box->lineEdit() ? box->lineEdit() : object;
    return isText && hidesItsText(editor) ? editor : nullptr;
}

void addText(const QObject *object, const char *property, QHash<QString, QString> *texts)
{
    const QString text = object->property(property).toString();
    if (!text.isEmpty() && !isTyped(object, property))
        texts->insert(QLatin1String(property), text);
}

// The toolkit gives buttons names by their order, or the same one to all, but for those of a
// calendar, which show what is chosen.
bool isNamedByToolkit(const QObject *object)
{
    const auto *button = qobject_cast<const QAbstractButton *>(object);
    return button && !button->text().isEmpty() &&
           ((button->objectName().startsWith(QLatin1String("qt_")) &&
             !button->objectName().startsWith(QLatin1String("qt_calendar_"))) ||
            button->objectName().startsWith(QLatin1String("__qt_")));
}

// The title of such a window is another one with each document.
bool namesItsFile(const QObject *window)
{
    return window->property("windowTitle").toString().contains(QLatin1String("[*]")) ||
           !window->property("windowFilePath").toString().isEmpty();
}

} // namespace

QString labelOf(const QObject *object)
{
    for (const char *property : labels) {
        const QString name = QLatin1String(property);
        const QString text = textForReaders(object, name, object->property(property).toString());
        if (!text.isEmpty())
            return text;
    }
    return {};
}

QHash<QString, QString> identifyingPropertiesOf(const QObject *object)
{
    QHash<QString, QString> texts;
    addText(object, "objectName", &texts);
    for (const char *property : labels)
        addText(object, property, &texts);
    // Fields of Qt Quick seldom have another name.
    const QString placeholder = object->property("placeholderText").toString();
    if (!placeholder.isEmpty() && isSceneItem(object))
        texts.insert(QStringLiteral("placeholderText"), placeholder);
    return texts;
}

QString realNameOf(const QObject *object)
{
    QMap<QString, ObjectName::PropertyValue> properties;
    const auto add = [&properties](const QString &name, const QString &text) {
        properties.insert(name, {ObjectName::PropertyValue::EXACT, text});
    };
    add(QStringLiteral("type"), typeNameOf(object->metaObject()));
    if (isNamedByToolkit(object)) {
        add(QStringLiteral("text"), object->property("text").toString());
    } else if (!object->objectName().isEmpty()) {
        add(QStringLiteral("name"), object->objectName());
    } else if (isSceneItem(object) && !SceneAccess::self()->idOf(object).isEmpty()) {
        add(QStringLiteral("id"), SceneAccess::self()->idOf(object));
    } else {
        const QHash<QString, QString> texts = identifyingPropertiesOf(object);
        for (auto it = texts.begin(); it != texts.end(); ++it) {
            if (it.key() != QLatin1String("windowTitle") || !namesItsFile(object))
                add(it.key(), it.value());
        }
    }
    return ObjectName(properties).qualifiedName();
}

bool isSecret(const QObject *object, const QString &property)
{
    return hiderOf(object, property);
}

QString textForReaders(const QObject *object, const QString &property, const QString &text)
{
    const QObject *hider = hiderOf(object, property);
    return hider ? hider->property("displayText").toString() : text;
}

} // namespace Morvex
