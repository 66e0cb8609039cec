#pragma once

#include "objectmodel/object.h"
#include "remote/protocol/objectref.h"

#include <memory>

namespace Morvex {

class RemoteModel;

/// An object of an application in another process, or something that the agent there holds.
class RemoteObject : public Object
{
public:
    RemoteObject(const std::shared_ptr<RemoteModel> &model, const ObjectRef &ref);
    ~RemoteObject() override;

    const ObjectRef &ref() const { return m_ref; }
    /// Numbers say nothing in another application.
    bool isOf(const RemoteModel *model) const { return m_model.get() == model; }

    int id() const override { return m_ref.id; }
    const Class *objectClass() const override;
    bool compare(const SharedPtr<Object> &other) const override;
    QString valueText() const override;
    QVariant value() const override { return {}; }

private:
    std::shared_ptr<RemoteModel> m_model;
    ObjectRef m_ref;
};

} // namespace Morvex
