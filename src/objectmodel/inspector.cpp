#include "objectmodel/inspector.h"

namespace Morvex {
namespace {

Inspector *installed = nullptr;

} // namespace

Inspector::~Inspector()
{
    if (installed == this)
        installed = nullptr;
}

Inspector *Inspector::self()
{
    return installed;
}

void Inspector::install(Inspector *inspector)
{
    installed = inspector;
}

SharedPtr<Object> Inspector::findObject(const QString &name, QString *error)
{
    return waitForObject(name, 0, error);
}

QVariant Inspector::askForReport(const QString &function, QString *error)
{
    return callFunction(function, {}, error);
}

QString Inspector::failure() const
{
    return {};
}

} // namespace Morvex
