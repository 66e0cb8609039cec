#pragma once

#include "runner/namesfile.h"
#include "runner/scriptengine.h"
#include "shared/files/newfile.h"
#include "test/testresult.h"

#include <QElapsedTimer>
#include <QJSValue>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <functional>

namespace Morvex {

class ApplicationAccess;
class ApplicationsOnDemand;

/// What a script can call. The functions that scripts see are in scriptapi.mjs; they check and
/// convert their arguments and call the slots of this class.
class ScriptApi : public QObject
{
    Q_OBJECT

public:
    struct Context
    {
        TestResult *result;
        /// Relative paths are looked up in the first, then in the second. Absolute.
        QString testCaseDir;
        QString suiteDir;
        /// Empty when there is none.
        QString resultDir;
        QStringList scriptArguments;
        double snoozeFactor;
        /// The text to add to the message of a result of this type, which may have a picture.
        std::function<QString(TestResult::ResultType)> screenshot;
    };

    /// @p applications is not owned.
    ScriptApi(ScriptEngine *engine, ApplicationsOnDemand *applications, const Context &context);

    /// Defines the global "names" by the names file of the suite. To be called before install: the
    /// file runs as it does where names are recorded, without the API.
    [[nodiscard]] NamesFileError defineNames();

    /// Defines the API in the global scope of the engine.
    void install();

    /// What calls for applications and verification points go to; null, with an error thrown in the
    /// script, when there is no access to applications.
    Q_INVOKABLE QObject *application();
    Q_INVOKABLE QObject *contexts();
    Q_INVOKABLE QObject *verification();

    Q_INVOKABLE void log(const QString &type, const QString &message, const QString &details);
    Q_INVOKABLE void check(bool passed, const QString &message, const QString &details,
                           bool expectFail);
    Q_INVOKABLE void compareTexts(bool equal, const QString &expected, const QString &actual,
                                  const QString &message, bool expectFail);
    Q_INVOKABLE void compareNumbers(int expected, int actual, const QString &message,
                                    bool expectFail);
    Q_INVOKABLE void startSection(const QString &title, const QString &description);
    Q_INVOKABLE void endSection();
    Q_INVOKABLE void attach(const QString &file, const QString &message);
    Q_INVOKABLE QString readFile(const QString &file);
    Q_INVOKABLE void writeFile(const QString &file, const QString &text);
    Q_INVOKABLE bool fileExists(const QString &file) const;
    Q_INVOKABLE QObject *openData(const QString &file, const QString &sheet);
    Q_INVOKABLE QString environment(const QString &name) const;
    // Never a QStringList: the engine's garbage collector frees elements of it that are in use.
    Q_INVOKABLE QVariantList scriptArguments() const;
    Q_INVOKABLE QVariantList pointTypes() const;
    Q_INVOKABLE void snooze(double seconds) const;
    /// Lets the script wait, in milliseconds.
    Q_INVOKABLE void pause(int milliseconds) const;
    /// Milliseconds of a clock that nobody sets.
    Q_INVOKABLE double clock() const { return static_cast<double>(m_clock.elapsed()); }
    Q_INVOKABLE QJSValue include(const QString &file);
    Q_INVOKABLE void abortProcess() const;

    /// Where a script writes a file of that name.
    Q_INVOKABLE QString targetPath(const QString &file) const;

private:
    QObject *partOf(QObject *(ApplicationAccess::*part)());
    NewFile copyToResultDir(const QString &path) const;
    QString existingPath(const QString &file) const;
    void throwError(const QString &message);

    ScriptEngine *m_engine;
    ApplicationsOnDemand *m_applications;
    Context m_context;
    QJSValue m_nameFunctions;
    QStringList m_including;
    QElapsedTimer m_clock;
};

} // namespace Morvex
