#include "qtbackend/sceneaccess.h"

#include <dlfcn.h>
#include <link.h>

namespace Morvex {
namespace {

// Never freed: the application may ask for items up to its very end.
QByteArray &libraryDirectory()
{
    static auto *const directory = new QByteArray;
    return *directory;
}

SceneAccess *load()
{
    if (libraryDirectory().isEmpty())
        return nullptr;
    const QByteArray path = libraryDirectory() + "/morvexquick.so";
    void *library = ::dlopen(path.constData(), RTLD_NOW | RTLD_LOCAL);
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

void SceneAccess::setLibraryDirectory(const QByteArray &directory)
{
    libraryDirectory() = directory;
}

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
