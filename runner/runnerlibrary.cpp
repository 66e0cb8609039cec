#include "runner/runnerlibrary.h"

#include <QCoreApplication>
#include <QFile>

#include <dlfcn.h>

namespace Morvex {
namespace {

// By its path: sanitizers call dlopen on their own behalf, so that the program's RUNPATH would not
// count.
QByteArray libraryPath()
{
    return QFile::encodeName(QCoreApplication::applicationDirPath() +
                             QStringLiteral("/" MORVEX_LIBRARIES_FROM_PROGRAM "/morvexrunner.so"));
}

// What the library lacks is to be missed at once.
const RunnerLibrary *load(QString *error)
{
    void *const handle = ::dlopen(libraryPath().constData(), RTLD_NOW);
    const void *const library = handle ? ::dlsym(handle, "morvexRunnerLibrary") : nullptr;
    if (!library)
        *error = QStringLiteral("the library of the runner can't be loaded, is the installation "
                                "complete? (%1)")
                     .arg(QString::fromLocal8Bit(::dlerror()));
    return static_cast<const RunnerLibrary *>(library);
}

} // namespace

const RunnerLibrary *runnerLibrary(QString *error)
{
    static QString whyNotLoaded;
    static const RunnerLibrary *const library = load(&whyNotLoaded);
    *error = whyNotLoaded;
    return library;
}

} // namespace Morvex
