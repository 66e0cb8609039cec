#include "qtbackend/elementdump.h"

#include "qtbackend/identification.h"
#include "qtbackend/nameresolver.h"
#include "qtbackend/pictures.h"
#include "qtbackend/qtmodel.h"
#include "qtbackend/valueobject.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QDataStream>
#include <QHash>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QWidget>

namespace Morvex {
namespace {

// The version that the readers of dumps expect.
const int streamVersion = QDataStream::Qt_4_9;

QString standardTypeOf(const QWidget *widget)
{
    if (widget->isWindow())
        return QStringLiteral("window");
    if (qobject_cast<const QAbstractButton *>(widget))
        return QStringLiteral("button");
    if (qobject_cast<const QLabel *>(widget))
        return QStringLiteral("label");
    if (qobject_cast<const QLineEdit *>(widget))
        return QStringLiteral("edit");
    if (qobject_cast<const QComboBox *>(widget))
        return QStringLiteral("combobox");
    if (qobject_cast<const QMenu *>(widget))
        return QStringLiteral("menu");
    if (qobject_cast<const QAbstractItemView *>(widget))
        return QStringLiteral("table");
    return {};
}

QStringList superTypesOf(const QWidget *widget)
{
    QStringList names;
    for (auto *type = widget->metaObject()->superClass(); type; type = type->superClass())
        names += QString::fromLatin1(type->className());
    return names;
}

QHash<QString, QString> propertiesOf(QtModel &model, QWidget *widget)
{
    QHash<QString, QString> properties;
    const SharedPtr<Object> self = model.wrap(widget);
    const Class *type = self->objectClass();
    for (const QString &name : type->propertyNames()) {
        const SharedPtr<Object> value = type->property(name)->get(self);
        const bool isShown = value && (value->id() != 0 || hasText(value->value()));
        const QString text = isShown ? textForReaders(widget, name, value->valueText()) : QString();
        if (!text.isEmpty())
            properties.insert(name, text);
    }
    return properties;
}

class Writer
{
public:
    Writer(QtModel &model, QByteArray *bytes)
        : m_model(model)
        , m_symbolicNames(NameResolver(model).symbolicNames())
        , m_stream(bytes, QIODevice::WriteOnly)
    {
        m_stream.setVersion(streamVersion);
    }

    void writeTree(QWidget *root)
    {
        m_stream << 1;
        writeElement(root, true);
    }

private:
    void writeElement(QWidget *widget, bool isRoot)
    {
        writeTypes(widget);
        m_stream << false << false << widget->isWindow();
        m_stream << labelOf(widget);
        writeGeometry(widget, isRoot);
        m_stream << grabWidget(widget);
        m_stream << realNameOf(widget) << m_symbolicNames.value(widget);
        m_stream << propertiesOf(m_model, widget) << identifyingPropertiesOf(widget);
        const int usedEvents = 0;
        m_stream << usedEvents;
        writeChildren(widget);
    }

    void writeTypes(QWidget *widget)
    {
        const QString type = QString::fromLatin1(widget->metaObject()->className());
        m_stream << QString::number(m_model.registry().idOf(widget)) << standardTypeOf(widget);
        m_stream << type << type << QString();
        const QStringList superTypes = superTypesOf(widget);
        m_stream << int(superTypes.size());
        for (const QString &superType : superTypes)
            m_stream << superType;
    }

    void writeGeometry(const QWidget *widget, bool isRoot)
    {
        const QPoint place = isRoot ? widget->mapToGlobal(QPoint()) : widget->pos();
        m_stream << QRect(place, widget->size()) << !isRoot;
    }

    void writeChildren(const QWidget *widget)
    {
        QList<QWidget *> shown;
        for (QWidget *child :
             widget->findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly)) {
            if (child->isVisible() && !child->isWindow())
                shown += child;
        }
        m_stream << int(shown.size());
        for (QWidget *child : qAsConst(shown))
            writeElement(child, false);
    }

    QtModel &m_model;
    QHash<const QObject *, QString> m_symbolicNames;
    QDataStream m_stream;
};

} // namespace

QByteArray dumpElements(QtModel &model, QObject *object)
{
    QByteArray bytes;
    Writer(model, &bytes).writeTree(static_cast<QWidget *>(object));
    return bytes;
}

} // namespace Morvex
