#include "qtbackend/sceneaccess.h"

#include "qtbackend/loadedlibrary.h"

#include <dlfcn.h>

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

} // namespace

void SceneAccess::setLibraryDirectory(const QByteArray &directory)
{
    libraryDirectory() = directory;
}

SceneAccess *SceneAccess::self()
{
    static LoadedLibrary quick("libQt5Quick.so.5");
    static SceneAccess *access = nullptr;
    static bool isLoaded = false;
    if (!isLoaded && quick.handle()) {
        isLoaded = true;
        access = load();
    }
    return access;
}

} // namespace Morvex
