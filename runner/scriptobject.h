#pragma once

#include "objectmodel/object.h"

#include <QJSValue>
#include <QObject>
#include <QString>

namespace Morvex {

/// What find gives to a script. Methods that can't do what they are asked throw in the script.
class ScriptObject : public QObject
{
    Q_OBJECT

public:
    /// A null @p object stands for one that was not found; @p error then says why.
    ScriptObject(const QString &name, const SharedPtr<Object> &object, const QString &error);

    /// The property at the end of a path of names, joined by dots.
    Q_INVOKABLE QJSValue get(const QString &path);
    Q_INVOKABLE void set(const QString &path, const QJSValue &value);
    /// In the middle, unless both coordinates are numbers.
    Q_INVOKABLE void click(const QJSValue &x, const QJSValue &y);
    Q_INVOKABLE void type(const QString &text);
    Q_INVOKABLE bool exists();

    /// An item of the object; @p selector is a text, or a row and a column. The first waits for it
    /// up to a time in milliseconds.
    Q_INVOKABLE void useItem(const QString &action, const QVariantList &selector, int timeout);
    Q_INVOKABLE QString itemText(const QVariantList &selector, int timeout);
    Q_INVOKABLE bool hasItem(const QVariantList &selector);

private:
    SharedPtr<Object> follow(const QStringList &steps);
    bool isThere(QString *whyNotKnown) const;
    bool call(const QString &function, const QVariantList &arguments, QVariant *answer);
    bool waitForItem(const QVariantList &selector, int timeout);
    void fail(const QString &what);

    QString m_name;
    SharedPtr<Object> m_object;
    QString m_error;
};

} // namespace Morvex
