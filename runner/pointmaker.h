#pragma once

#include "objectmodel/object.h"

#include <QString>
#include <QStringList>

namespace Morvex {

/// What the file of a new verification point is to hold.
struct PointRequest
{
    /// Empty when the script does not say.
    QString objectName;
    /// The type as files have it.
    QString type;
    /// Of type ObjectProperties; each may be a path.
    QStringList properties;
};

/// Makes the file from the live object. Of screenshots and tables it still lacks the content, which
/// a verification that learns puts in. Returns an error text, empty on success; after an error a
/// part of the file may be left.
[[nodiscard]] QString makePointFile(const QString &path, const PointRequest &request,
                                    const SharedPtr<Object> &object);

/// How to have a file made that does not exist.
QString howToMakePoint(const QString &name, const QString &path);

/// Whether the file is one that no verification updates.
bool isVisualPoint(const QString &path);

} // namespace Morvex
