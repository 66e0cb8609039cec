#include "shared/settings.h"

#include "shared/environment.h"

#include <QDir>

namespace Morvex {

QString Settings::morvexSettingsDir()
{
    QString path = QString::fromStdString(Environment::getVariable("MORVEX_USER_SETTINGS_DIR"));
    if (path.isEmpty())
        path = QDir::homePath() + QLatin1String("/.morvex");
    QDir().mkpath(path);
    return path;
}

} // namespace Morvex
