#include "runner/resources.h"

// Outside of namespaces, as the macro wants it.
static void initializeResources()
{
    Q_INIT_RESOURCE(scriptapi);
}

namespace Morvex {

QString resourcePath(const QString &name)
{
    // A static library has its resources only when it is asked for them.
    initializeResources();
    return QLatin1String(":/morvexrunner/") + name;
}

} // namespace Morvex
