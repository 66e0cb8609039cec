#pragma once

#include "morvex_export.h"
#include "objectmodel/object.h"

#include <QString>
#include <QVariant>

namespace Morvex {

class Class;
class Namespace;

/// The way into the application under test. All calls come from one thread; the classes and
/// namespaces that it hands out are its own.
class MORVEX_EXPORT Inspector
{
public:
    virtual ~Inspector();

    /// The installed backend; null when there is none.
    static Inspector *self();

    /// Makes @p inspector the one in use; null takes it out again. Not owned.
    static void install(Inspector *inspector);

    virtual SharedPtr<Object> makeInt(int value) = 0;
    virtual SharedPtr<Object> makeDouble(double value) = 0;
    virtual SharedPtr<Object> makeBool(bool value) = 0;
    virtual SharedPtr<Object> makeString(const QByteArray &utf8) = 0;

    /// Null when there is no such class.
    virtual const Class *findClass(const QString &name) = 0;
    /// The class of the functions that belong to no object. Never null.
    virtual const Class *globalClass() = 0;
    /// Null when there is no such namespace.
    virtual const Namespace *findNamespace(const QString &name) = 0;

    /// The same object seen as one of the class of that name; null when it is none.
    virtual SharedPtr<Object> cast(const SharedPtr<Object> &object, const QString &className) = 0;

    /// Finds an object by its symbolic or multi-property name, once the application has handled
    /// what is pending. Null when there is not exactly one; @p error, which may be null, then says
    /// what there is instead.
    SharedPtr<Object> findObject(const QString &name, QString *error);

    /// The same, trying again until the object is there or @p timeout, in milliseconds, is over.
    /// The application goes on running meanwhile.
    virtual SharedPtr<Object> waitForObject(const QString &name, int timeout, QString *error) = 0;

    /// Calls a function of the application side. Invalid on failure; @p error, which may be null,
    /// then has a text.
    virtual QVariant callFunction(const QString &name, const QVariantList &arguments,
                                  QString *error) = 0;

    /// The same for what a report is to say of an application, which may have ended: that is no
    /// call that its end has made fail.
    virtual QVariant askForReport(const QString &function, QString *error);

    /// Why the application gave no answer the last time that it was asked; empty when it did. A
    /// null object or value then says nothing about what was asked for.
    virtual QString failure() const;
};

} // namespace Morvex
