#pragma once

#include "morvex_qtbackend_export.h"
#include "objectmodel/inspector.h"

#include <functional>
#include <memory>

namespace Morvex {

class InputSequence;

/// The backend for the widgets of this process. Needs a QApplication that lives longer than it,
/// and its thread. Objects that it hands out must not be used after its end.
class MORVEX_QTBACKEND_EXPORT QtInspector : public Inspector
{
public:
    QtInspector();
    ~QtInspector() override;

    QtInspector(const QtInspector &) = delete;
    QtInspector &operator=(const QtInspector &) = delete;

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

    // For the agent, which must not turn the event loop of the application that it is in.

    /// One look at the objects as they are now; otherwise as waitForObject.
    SharedPtr<Object> lookUp(const QString &name, QString *error);
    /// The object of that id, which may no longer exist, seen as one of @p seenAs unless that is
    /// null.
    SharedPtr<Object> objectOf(int id, const Class *seenAs);
    bool isLive(const Object &object) const;
    /// Null for an invalid value.
    SharedPtr<Object> wrapValue(const QVariant &value);
    /// As callFunction, but comes back at once: what the event loop has to turn for is added to
    /// @p input.
    QVariant beginFunction(const QString &name, const QVariantList &arguments, InputSequence &input,
                           QString *error);
    /// Reports what the user does from now on, once for all.
    void record(const std::function<void(const QVariantMap &)> &sink);
    /// What "dumpUsage" answers; null when nothing is counted. Also when the windows, and the
    /// application object, no longer exist.
    QByteArray countedUsage();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Morvex
