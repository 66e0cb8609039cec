#pragma once

#include "morvex_export.h"
#include "objectmodel/shared.h"
#include "objectmodel/sharedptr.h"

#include <QDateTime>
#include <QObject>
#include <QSharedPointer>
#include <QString>

namespace Morvex {

/// An application that a runner is attached to. The library only passes it on: what the fields say
/// is the runner's affair.
class MORVEX_EXPORT ApplicationContext : public Shared
{
public:
    ~ApplicationContext() override;

    int id = -1;
    QString name;
    QString host;
    int port = -1;
    int state = 0;
    QDateTime startTime;
    qint64 processId = 0;
    QSharedPointer<QObject> connection;
};

} // namespace Morvex
