#pragma once

#include <QMetaType>
#include <QString>
#include <QVariant>

namespace Morvex {

/// How an object of the application travels.
struct ObjectRef
{
    enum Kind : quint8 {
        Null = 0,
        /// A live object, known by its id.
        Live = 1,
        /// Something that the agent keeps under a handle until the runner releases it.
        Held = 2,
        /// A plain value.
        Value = 3,
    };

    Kind kind = Null;
    qint32 id = 0;
    quint32 handle = 0;
    /// The number of its class; 0 for none.
    quint32 classNumber = 0;
    /// Of a live object whether it is seen as one of another class than its own.
    bool isCast = false;
    /// Of all but live objects.
    QString text;
    QVariant value;
};

} // namespace Morvex

Q_DECLARE_METATYPE(Morvex::ObjectRef)
