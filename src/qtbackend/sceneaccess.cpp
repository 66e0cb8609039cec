#include "qtbackend/sceneaccess.h"

#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>

namespace Morvex {
namespace {

// Two directories up from a plugin of the agent; beside any other library.
QByteArray libraryPath()
{
    Dl_info own = {};
    if (::dladdr(reinterpret_cast<void *>(&libraryPath), &own) == 0)
        return {};
    const QString directory = QFileInfo(QFile::decodeName(own.dli_fname)).absolutePath();
    return QFile::encodeName(directory + QLatin1String("/../morvexquick.so"));
}

SceneAccess *load()
{
    void *library = ::dlopen(libraryPath().constData(), RTLD_NOW | RTLD_LOCAL);
    const auto make =
        library ? reinterpret_cast<SceneAccessFunction>(::dlsym(library, sceneAccessFunctionName))
                : nullptr;
    return make ? make() : nullptr;
}

bool isQuickThere()
{
    void *quick = ::dlopen("libQt5Quick.so.5", RTLD_NOW | RTLD_NOLOAD);
    if (quick)
        ::dlclose(quick);
    return quick;
}

} // namespace

SceneAccess *SceneAccess::self()
{
    static SceneAccess *access = nullptr;
    static bool isLoaded = false;
    if (!isLoaded && isQuickThere()) {
        isLoaded = true;
        access = load();
    }
    return access;
}

} // namespace Morvex
