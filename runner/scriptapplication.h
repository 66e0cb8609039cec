#pragma once

#include "objectmodel/object.h"
#include "objectmodel/objectmap.h"

#include <QJSValue>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace Morvex {

class Applications;
class Inspector;

/// The current one of the applications of a test case, for scripts.
class ScriptApplication : public QObject
{
    Q_OBJECT

public:
    /// @p applications is not owned.
    explicit ScriptApplication(Applications *applications);
    ~ScriptApplication() override;

    /// Names that begin with ":" are looked up in this file; without it, errors about such names
    /// say so. Returns an error text, empty on success.
    [[nodiscard]] QString loadObjectMap(const QString &fileName);

    /// @p callback is called before the script starts an application.
    void setBeforeStart(const std::function<void()> &callback) { m_beforeStart = callback; }

    /// @p callback is called with its context before an application, which is the current one
    /// then, is stopped by the script: it takes with it what it knows of its use and its end.
    void setBeforeStop(const std::function<void(int)> &callback) { m_beforeStop = callback; }

    /// With each context, also one that has ended by itself, as the current one.
    void forEachContext(const std::function<void()> &function);

    /// Whether the script has started one, which may have ended.
    bool wasStarted() const;

    /// Whether a call has failed because the current one has ended, and how it has.
    bool isEndMet() const;
    QString end() const;

    /// Waits for an object up to a time in milliseconds. Null when there is not exactly one; the
    /// error, which may be null, then says why.
    SharedPtr<Object> object(const QString &name, int timeout, QString *error) const;

    /// A name and arguments. The name is the path of a program, or the name of one of the
    /// installation or of one found by PATH; nothing at all is the application of the suite.
    /// Returns an error text, empty on success.
    [[nodiscard]] Q_INVOKABLE QString start(const QStringList &command);
    /// The application of a context.
    Q_INVOKABLE void stop(int context);

    /// Waits for an object up to a time in milliseconds. The script owns the result, which is
    /// never null. Throws in the script when the application can't say whether the object is there.
    Q_INVOKABLE QObject *find(const QString &name, int timeout);
    /// All objects that the name fits now, as a list.
    Q_INVOKABLE QJSValue findAll(const QString &name);

private:
    QString whyNotFindable() const;
    void use(int context, const std::function<void()> &function);

    Applications *m_applications;
    ObjectMap m_objectMap;
    // Empty when it was read or none was named.
    QString m_missingObjectMap;
    std::function<void()> m_beforeStart;
    std::function<void(int)> m_beforeStop;
};

} // namespace Morvex
