#pragma once

#include "morvex_export.h"
#include "objectmodel/inspector.h"

#include <memory>

namespace Morvex {

class RemoteModel;
class RemoteSession;

/// The backend for an application in a process of its own. When that has ended, or gives no answer
/// in time, objects and values are null as if they were not there, and failure says why.
class MORVEX_EXPORT RemoteInspector : public Inspector
{
public:
    explicit RemoteInspector(std::unique_ptr<RemoteSession> session);
    ~RemoteInspector() override;

    RemoteInspector(const RemoteInspector &) = delete;
    RemoteInspector &operator=(const RemoteInspector &) = delete;

    RemoteSession &session();

    SharedPtr<Object> makeInt(int value) override;
    SharedPtr<Object> makeDouble(double value) override;
    SharedPtr<Object> makeBool(bool value) override;
    SharedPtr<Object> makeString(const QByteArray &utf8) override;
    const Class *findClass(const QString &name) override;
    const Class *globalClass() override;
    const Namespace *findNamespace(const QString &name) override;
    SharedPtr<Object> cast(const SharedPtr<Object> &object, const QString &className) override;
    SharedPtr<Object> waitForObject(const QString &name, int timeout, QString *error) override;
    QVariant callFunction(const QString &name, const QVariantList &arguments,
                          QString *error) override;
    QVariant askForReport(const QString &function, QString *error) override;
    QString failure() const override;

    /// The live object that the application knows by this number, also if it no longer exists.
    SharedPtr<Object> objectWithId(int id);

    /// Whether it is an object of this application.
    bool owns(const SharedPtr<Object> &object) const;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Morvex
