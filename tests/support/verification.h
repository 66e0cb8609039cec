#pragma once

#include "support/backend.h"
#include "support/environmentguard.h"
#include "support/recordinggenerator.h"
#include "test/dummyrunnerinterface.h"
#include "test/objectnameresolverinterface.h"
#include "test/testvp.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>

namespace MorvexTest {

class VerificationRunner : public Morvex::DummyRunnerInterface
{
public:
    using DummyRunnerInterface::DummyRunnerInterface;

    QString currentTestCase() override { return script; }
    QString resultDirectory() override { return results; }

    QString script;
    QString results;
};

/// Finds objects by their names through the inspector.
class VerificationResolver : public Morvex::ObjectNameResolverInterface
{
public:
    Morvex::SharedPtr<Morvex::Object> resolve(const QString &name, QString *error) override
    {
        ++lookups;
        if (beforeLookup)
            beforeLookup(lookups);
        return Morvex::Inspector::self()->findObject(name, error);
    }
    bool allowsSeveralObjects() const override { return severalObjects; }

    std::function<void(int lookup)> beforeLookup;
    int lookups = 0;
    bool severalObjects = false;
};

/// Verifies real widgets, through an inspector of each backend in turn, with verification points
/// that are given as text, in a suite in a temporary directory.
class VerificationTest : public testing::Test
{
protected:
    VerificationTest();
    ~VerificationTest() override;

    /// @p body is within the root element.
    Morvex::VPResult verify(const QByteArray &rootAttributes, const QByteArray &body);
    /// @p file is the whole document.
    Morvex::VPResult verifyFile(const QByteArray &file);

    /// "TYPE message|details" of the entries since the last call, attachments and the frame left
    /// out.
    QStringList takeResults();
    const std::vector<Morvex::TestResult::Entry> &entries() const { return m_generator->entries; }
    QString path(const QString &name) const { return m_dir.filePath(name); }
    QByteArray pointFile() const;

    Backend backend;
    Morvex::Inspector &inspector = backend.inspector();
    Morvex::TestResult log;
    VerificationRunner runner;
    VerificationResolver resolver;
    Morvex::VerificationOptions options;
    const Morvex::TestDataRecord *record = nullptr;
    bool expectFail = false;
    std::vector<Morvex::LineInfo> stack{{"/s/a.js", 1}, {"/s/b.js", 2}};

private:
    QTemporaryDir m_dir;
    EnvironmentGuard m_learn;
    RecordingGenerator *m_generator;
    std::size_t m_taken = 0;
};

} // namespace MorvexTest
