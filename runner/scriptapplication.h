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

class Inspector;
class RemoteApplication;

/// The application under test of a test case: a program in a process of its own. It is stopped at
/// the end of this object's life.
class ScriptApplication : public QObject
{
    Q_OBJECT

public:
    /// @p searchDirs are where files named by scripts are looked up.
    explicit ScriptApplication(const QStringList &searchDirs);
    ~ScriptApplication() override;

    /// Names that begin with ":" are looked up in this file; without it, errors about such names
    /// say so. Returns an error text, empty on success.
    [[nodiscard]] QString loadObjectMap(const QString &fileName);

    /// @p callback is called before a script stops a program or starts another one in its place,
    /// which takes with it what it knows of its use; not at the end of this object's life.
    void setBeforeStop(const std::function<void()> &callback) { m_beforeStop = callback; }

    /// Whether the script has started one, which may have ended.
    bool wasStarted() const { return m_wasStarted; }

    /// Waits for an object up to a time in milliseconds. Null when there is not exactly one; the
    /// error, which may be null, then says why.
    SharedPtr<Object> object(const QString &name, int timeout, QString *error) const;

    /// A name and arguments. The name is the path of a program, or the name of one of the
    /// installation or of one found by PATH. Returns an error text, empty on success.
    [[nodiscard]] Q_INVOKABLE QString start(const QStringList &command);
    Q_INVOKABLE void stop();

    /// Whether an application is running, at the latest after a time in milliseconds.
    Q_INVOKABLE bool waitUntilRunning(int timeout);

    /// Waits for an object up to a time in milliseconds. The script owns the result, which is
    /// never null. Throws in the script when the application can't say whether the object is there.
    Q_INVOKABLE QObject *find(const QString &name, int timeout);
    /// All objects that the name fits now, as a list.
    Q_INVOKABLE QJSValue findAll(const QString &name);
    /// Lets the script wait, in milliseconds.
    Q_INVOKABLE void pause(int milliseconds) const;

private:
    QString pathOf(const QString &name) const;
    QString startProgram(const QStringList &command);
    bool isRunning() const { return m_program != nullptr; }
    Inspector *inspector() const;
    QString whyNotFindable() const;

    QStringList m_searchDirs;
    ObjectMap m_objectMap;
    // Empty when it was read or none was named.
    QString m_missingObjectMap;
    std::unique_ptr<RemoteApplication> m_program;
    bool m_wasStarted = false;
    std::function<void()> m_beforeStop;
};

} // namespace Morvex
