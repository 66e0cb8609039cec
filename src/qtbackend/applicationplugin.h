#pragma once

#include <QString>
#include <QStringList>
#include <QtPlugin>

namespace Morvex {

/// An application to test within the process of the runner: the root of a Qt plugin. All calls
/// come from the main thread.
class ApplicationPlugin
{
public:
    virtual ~ApplicationPlugin() = default;

    /// Opens the windows of the application. A script may do this more than once, with a stop in
    /// between. Returns an error text, empty on success.
    [[nodiscard]] virtual QString start(const QStringList &arguments) = 0;

    /// Closes and deletes what start has made. Called at the end of the test case too.
    virtual void stop() = 0;
};

} // namespace Morvex

Q_DECLARE_INTERFACE(Morvex::ApplicationPlugin, "morvex.ApplicationPlugin/1.0")
