#include "runner/resources.h"

#include <QFile>

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

QString resourceText(const QString &name)
{
    QFile file(resourcePath(name));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("%s is missing in this executable", qUtf8Printable(name));
    return QString::fromUtf8(file.readAll());
}

} // namespace Morvex
