#pragma once

#include "qtbackend/namecondition.h"

#include <QHash>
#include <QPair>
#include <QPointer>

#include <vector>

namespace Morvex {

class QtModel;

/// The objects of the application by the texts that names ask for, so that many names can be looked
/// up without a walk over all objects for each. Used within one turn of the event loop.
class ObjectIndex
{
public:
    explicit ObjectIndex(QtModel &model);

    /// Those that all the conditions may hold for, in the order of QtModel::allObjects.
    std::vector<QObject *> candidates(const NameConditions &conditions);

private:
    // To read a property may end the life of any of them.
    using Objects = std::vector<QPointer<QObject>>;
    using ObjectsByText = QHash<QString, Objects>;

    const Objects &objectsOf(const QString &type);
    const ObjectsByText &objectsByText(const QString &type, const NameCondition &condition);

    QtModel &m_model;
    Objects m_objects;
    // Of the classes that were asked for, and those derived from them.
    QHash<QString, Objects> m_byType;
    // By a class and a property.
    QHash<QPair<QString, QString>, ObjectsByText> m_byText;
};

} // namespace Morvex
