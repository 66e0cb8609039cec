#pragma once

#include "morvex_qtbackend_export.h"
#include "objectmodel/inspector.h"

#include <memory>

namespace Morvex {

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

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace Morvex
