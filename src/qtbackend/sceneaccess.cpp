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

bool isQuickThere()
{
    void *quick = ::dlopen("libQt5Quick.so.5", RTLD_NOW | RTLD_NOLOAD);
    if (quick)
        ::dlclose(quick);
    return quick;
}

// How many libraries the process has loaded so far, which costs far less than to look for one.
unsigned long long loadedLibraries()
{
    unsigned long long count = 0;
    ::dl_iterate_phdr(
        [](dl_phdr_info *info, std::size_t, void *result) {
            *static_cast<unsigned long long *>(result) = info->dlpi_adds;
            return 1;
        },
        &count);
    return count;
}

// Asked for each object that is looked at.
bool hasQuickCome()
{
    static unsigned long long seenLibraries = 0;
    const unsigned long long libraries = loadedLibraries();
    if (libraries == seenLibraries)
        return false;
    seenLibraries = libraries;
    return isQuickThere();
}

} // namespace

SceneAccess *SceneAccess::self()
{
    static SceneAccess *access = nullptr;
    static bool isLoaded = false;
    if (!isLoaded && hasQuickCome()) {
        isLoaded = true;
        access = load();
    }
    return access;
}

} // namespace Morvex
