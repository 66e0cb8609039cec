#pragma once

#include "remote/remoteapplication.h"
#include "remote/remoteinspector.h"
#include "support/environmentguard.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace MorvexTest {

/// Starts applications whose temporary folders nobody else uses.
class RemoteApplicationFixture : public testing::Test
{
protected:
    std::unique_ptr<Morvex::RemoteApplication> start(const QStringList &command)
    {
        options.command = command;
        options.prefix = MORVEX_TEST_PREFIX;
        return Morvex::RemoteApplication::start(options, &error);
    }

    // With the name of a button of the awkward program.
    QString click(Morvex::RemoteApplication *application, const QString &name)
    {
        const Morvex::SharedPtr<Morvex::Object> button =
            application->inspector()->waitForObject(name, 60000, &error);
        if (button)
            application->inspector()->callFunction("clickObject", {button->id()}, &error);
        return error;
    }

    QStringList temporaryDirectories() const
    {
        return QDir(dir.path()).entryList({"morvex-*"}, QDir::Dirs);
    }

    QTemporaryDir dir{"/tmp/t-XXXXXX"};
    EnvironmentGuard temporary{"TMPDIR", dir.path().toUtf8()};
    EnvironmentGuard platform{"QT_QPA_PLATFORM", "offscreen"};
    Morvex::RemoteApplication::Start options;
    QString error;
};

} // namespace MorvexTest
