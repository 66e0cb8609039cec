#include "qtbackend/nametree.h"

#include "qtbackend/nameresolver.h"
#include "qtbackend/objecttree.h"
#include "qtbackend/qtmodel.h"

#include <QHash>
#include <QPointer>

namespace Morvex {

QVariantList nameTree(QtModel &model)
{
    // To read a property for a name may end the life of any of them.
    std::vector<QPointer<QObject>> objects;
    for (QObject *object : model.allObjects())
        objects.emplace_back(object);
    NameResolver resolver(model);
    QHash<const QObject *, int> depths;
    QVariantList tree;
    for (const QPointer<QObject> &object : objects) {
        const QString name = object ? resolver.uniqueName(object) : QString();
        if (!object)
            continue;
        const int depth = depths.value(parentObjectOf(object), -1) + 1;
        depths.insert(object, depth);
        tree += QVariant(QVariantList{model.registry().idOf(object), depth, name});
    }
    return tree;
}

} // namespace Morvex
