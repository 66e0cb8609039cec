#include "qtbackend/sceneaccess.h"

#include <QFile>
#include <QFileInfo>

#include <dlfcn.h>
#include <link.h>

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

// How many libraries were ever opened in this process.
unsigned long long countLoads()
{
    unsigned long long count = 0;
    ::dl_iterate_phdr(
        [](dl_phdr_info *info, std::size_t, void *data) {
            *static_cast<unsigned long long *>(data) = info->dlpi_adds;
            return 1;
        },
        &count);
    return count;
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
    static unsigned long long librariesBefore = 0;
    if (isLoaded)
        return access;
    // To look for one takes long; this is asked for every object.
    const unsigned long long libraries = countLoads();
    if (libraries != librariesBefore && isQuickThere()) {
        isLoaded = true;
        access = load();
    }
    librariesBefore = libraries;
    return access;
}

} // namespace Morvex
