#pragma once

#include "objectmodel/object.h"

#include <QJSValue>
#include <QObject>
#include <QString>

#include <memory>

namespace Morvex {

class RemoteInspector;

/// What find gives to a script. Methods that can't do what they are asked throw in the script.
class ScriptObject : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name CONSTANT)

public:
    /// @p inspector is that of the object's own application; null for none. A null @p object stands
    /// for one that was not found; @p error then says why.
    ScriptObject(const std::shared_ptr<RemoteInspector> &inspector, const QString &name,
                 const SharedPtr<Object> &object, const QString &error);

    QString name() const { return m_name; }

    /// The property at the end of a path of names, joined by dots.
    Q_INVOKABLE QJSValue get(const QString &path);
    Q_INVOKABLE void set(const QString &path, const QJSValue &value);
    /// Whether messages have to leave the value of the property out; also when that can't be known.
    Q_INVOKABLE bool isSecret(const QString &path);
    /// "click", "doubleClick", "hover", "drag" or "wheel" and its options, as the function
    /// "useMouse" of the application takes them.
    Q_INVOKABLE void useMouse(const QString &gesture, const QVariantMap &options);
    /// Closes the window that it is, or is in.
    Q_INVOKABLE void close();
    Q_INVOKABLE void type(const QString &text);
    /// What a field holds is replaced with the value of an environment variable, of which no error
    /// text says anything.
    Q_INVOKABLE void typePassword(const QString &variable);
    Q_INVOKABLE bool exists();

    /// False for one that is hidden; true for one that can't be.
    Q_INVOKABLE bool isVisible();
    /// The number under which the application knows another one, to which this is dragged. Throws
    /// when that was not found, or is of another application.
    Q_INVOKABLE int targetId(QObject *target);
    Q_INVOKABLE QVariantMap properties();
    /// A list of these objects.
    Q_INVOKABLE QJSValue children();
    /// Writes a picture of it in PNG. The path has to be absolute.
    Q_INVOKABLE void screenshot(const QString &path);

    /// An item of the object; @p selector is a text, which may be followed by a map of options, or
    /// a row and a column. All but the last wait for it up to a time in milliseconds.
    Q_INVOKABLE bool waitForItem(const QVariantList &selector, int timeout);
    Q_INVOKABLE void useItem(const QString &action, const QVariantList &selector,
                             const QString &value, int timeout);
    Q_INVOKABLE QVariantMap itemProperties(const QVariantList &selector, int timeout);
    Q_INVOKABLE bool hasItem(const QVariantList &selector);

    /// What a script gets for a list of pairs of ids and names from the application.
    static QJSValue listOf(QJSEngine *engine, const std::shared_ptr<RemoteInspector> &inspector,
                           const QVariantList &found);

private:
    SharedPtr<Object> follow(const QStringList &steps);
    bool isThere(QString *whyNotKnown) const;
    QString whyNoAnswer() const;
    bool call(const QString &function, const QVariantList &arguments, QVariant *answer);
    [[nodiscard]] QString tryCall(const QString &function, const QVariantList &arguments,
                                  QVariant *answer);
    void fail(const QString &what);

    std::shared_ptr<RemoteInspector> m_inspector;
    QString m_name;
    SharedPtr<Object> m_object;
    QString m_error;
};

} // namespace Morvex
