#pragma once

#include "morvex_export.h"

#include <QString>
#include <QStringList>

#include <memory>

class QDir;

namespace Morvex {

class TestResult;

/// One test case in a child runner: reads its metadata and frames its run in the log.
class MORVEX_EXPORT TestCase
{
public:
    /// Both start the log when it is not started yet. @p result is not owned.
    TestCase(TestResult *result, const QString &name);
    /// The name is the last component of the directory's path, which should be absolute: that of
    /// "." is ".".
    TestCase(TestResult *result, const QDir &dir);
    virtual ~TestCase();

    TestCase(const TestCase &) = delete;
    TestCase &operator=(const TestCase &) = delete;

    /// False keeps the test from being executed.
    virtual bool init();
    /// The body of the test.
    virtual void execute() = 0;
    /// Called at the end of each run, also after a failed init.
    virtual bool cleanup();

    QString name() const { return m_name; }
    QString summary() const { return m_summary; }
    QString description() const { return m_description; }
    QStringList tags() const { return m_tags; }

    /// The current directory when the test case was made from a name.
    QDir testCaseDirectory() const;

    /// Ends the log after the test when @p complete is set.
    void run(bool complete);

protected:
    TestResult *result() const { return m_result; }

private:
    void readConfiguration();
    QString configurationFile() const;
    void startResult();

    TestResult *m_result;
    QString m_name;
    std::unique_ptr<QDir> m_dir;
    QString m_summary;
    QString m_description;
    QStringList m_tags;
};

} // namespace Morvex
