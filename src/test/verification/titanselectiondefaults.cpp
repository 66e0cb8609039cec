#include "test/verification/titanselectiondefaults.h"

#include "objectmodel/inspector.h"

#include <algorithm>

namespace Morvex {

bool ClassMapping::includePropertyCheck(const Class *type, const std::string &name) const
{
    const auto found = m_classes.find(name);
    return type && found != m_classes.end() &&
           std::any_of(found->second.begin(), found->second.end(),
                       [&](const Class *other) { return type->isSubclassOf(other); });
}

const Class *TitanSelectionDefaults::findClass(const QString &name) const
{
    Inspector *inspector = Inspector::self();
    return inspector ? inspector->findClass(name) : nullptr;
}

} // namespace Morvex
