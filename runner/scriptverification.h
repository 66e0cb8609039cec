#pragma once

#include "runner/scriptrunner.h"
#include "test/testresult.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariantMap>

#include <vector>

namespace Morvex {

class ScriptApplication;
class ScriptEngine;
class VPResult;
struct PointRequest;

/// Verification points for scripts.
class ScriptVerification : public QObject
{
    Q_OBJECT

public:
    /// @p searchDirs are where the directory "points" is looked up. Nothing is owned.
    ScriptVerification(ScriptEngine *engine, const ScriptApplication *application,
                       TestResult *result, const ScriptRunner &runner,
                       const QStringList &searchDirs);

    /// Logs the results and returns whether all were as expected. While learning, a file that does
    /// not exist is made of what the options name. @p table, a ScriptData, and
    /// @p row give values to properties; null for none. The options have been checked.
    Q_INVOKABLE bool verify(const QString &name, const QVariantMap &options, QObject *table,
                            int row);

private:
    bool compare(const QString &name, const QVariantMap &options, QObject *table, int row);
    enum Making { NotMade, Made, MadeByAnotherRun };

    Making make(const QString &name, const QString &path, const QVariantMap &options);
    Making makeOf(const SharedPtr<Object> &object, const QString &name, const QString &path,
                  const PointRequest &request);
    void addNotMade(const QString &name, const QString &reason);
    bool fillIn(const QString &name, const QString &path);
    void addWarning(const QString &message, const QString &details);
    void addMissingResult(const QString &name, const VPResult &outcome, bool hasLoggedFailure);
    QString pointPath(const QString &name) const;

    ScriptEngine *m_engine;
    const ScriptApplication *m_application;
    TestResult *m_result;
    ScriptRunner m_runner;
    QStringList m_searchDirs;
};

} // namespace Morvex
