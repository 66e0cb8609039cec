#include "runner/compiledscripts.h"

#include "runner/resources.h"

#include <QHash>
#include <QUrl>
#include <QtQml/qqmlprivate.h>

// The names are those of the compiler.
#define MORVEX_COMPILED_SCRIPT(name)                                                               \
    namespace QmlCacheGeneratedCode {                                                              \
    namespace _0x5f__##name##_mjs                                                                  \
    {                                                                                              \
        extern const unsigned char qmlData[];                                                      \
    }                                                                                              \
    }
#include "compiledscripts.inc"
#undef MORVEX_COMPILED_SCRIPT

namespace Morvex {
namespace {

using Unit = QQmlPrivate::CachedQmlUnit;

// By their paths.
QHash<QString, Unit> compiledScripts()
{
    QHash<QString, Unit> units;
    const auto add = [&units](const char *name, const unsigned char *data) {
        const QString path = resourcePath(QLatin1String(name) + QLatin1String(".mjs")).mid(1);
        units.insert(path,
                     {reinterpret_cast<const QV4::CompiledData::Unit *>(data), nullptr, nullptr});
    };
#define MORVEX_COMPILED_SCRIPT(name)                                                               \
    add(#name, QmlCacheGeneratedCode::_0x5f__##name##_mjs::qmlData);
#include "compiledscripts.inc"
#undef MORVEX_COMPILED_SCRIPT
    return units;
}

const Unit *compiledScript(const QUrl &url)
{
    static const QHash<QString, Unit> units = compiledScripts();
    const auto unit = units.constFind(url.path());
    return unit == units.constEnd() ? nullptr : &*unit;
}

} // namespace

void useCompiledScripts()
{
    static bool isDone = false;
    if (isDone)
        return;
    isDone = true;
    QQmlPrivate::RegisterQmlUnitCacheHook hook = {};
    hook.lookupCachedQmlUnit = compiledScript;
    QQmlPrivate::qmlregister(QQmlPrivate::QmlUnitCacheHookRegistration, &hook);
}

} // namespace Morvex
