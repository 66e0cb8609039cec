#include "qtbackend/scenecell.h"

#include "qtbackend/sceneaccess.h"

#include <QVariant>

namespace Morvex {
namespace {

int numberOf(const QObject *delegate, const char *name)
{
    const QVariant own = delegate->property(name);
    const QVariant known =
        own.isValid() ? own : SceneAccess::self()->contextValueOf(delegate, QLatin1String(name));
    return known.isValid() ? known.toInt() : -1;
}

} // namespace

bool isSceneTable(const QObject *view)
{
    return view && view->inherits("QQuickTableView");
}

SceneCell sceneCellOf(const QObject *delegate)
{
    return {numberOf(delegate, "row"), numberOf(delegate, "column")};
}

} // namespace Morvex
