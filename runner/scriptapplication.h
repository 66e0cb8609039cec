#pragma once

#include "objectmodel/object.h"
#include "objectmodel/objectmap.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <memory>

namespace Morvex {

class ApplicationPlugin;
class QtInspector;

/// The application under test of a test case, started inside this process. It is stopped at the
/// end of this object's life.
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

    /// Waits for an object up to a time in milliseconds. Null when there is not exactly one; the
    /// error, which may be null, then says why.
    SharedPtr<Object> object(const QString &name, int timeout, QString *error) const;

    /// A name and arguments. The name is the path of a plugin or that of one of the installation.
    /// Returns an error text, empty on success.
    [[nodiscard]] Q_INVOKABLE QString start(const QStringList &command);
    Q_INVOKABLE void stop();
    /// Makes a start possible from within the handling of an event, too.
    Q_INVOKABLE void prepare();

    /// Whether an application is running, at the latest after a time in milliseconds.
    Q_INVOKABLE bool waitUntilRunning(int timeout);

    /// Waits for an object up to a time in milliseconds. The script owns the result, which is
    /// never null.
    Q_INVOKABLE QObject *find(const QString &name, int timeout);

private:
    QString pluginPath(const QString &name) const;
    QString whyNotFindable() const;

    QStringList m_searchDirs;
    ObjectMap m_objectMap;
    // Empty when it was read or none was named.
    QString m_missingObjectMap;
    std::unique_ptr<QtInspector> m_inspector;
    ApplicationPlugin *m_running = nullptr;
};

} // namespace Morvex
