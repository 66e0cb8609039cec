#pragma once

#include "morvex_export.h"
#include "test/testreportgenerator.h"

#include <QDateTime>
#include <QString>

#include <iosfwd>
#include <string>

class QDir;
class QFileInfo;

namespace Morvex {

// What several report formats need.

/// Takes the directories of suite and test case from a START entry; other entries change nothing.
/// A run of a single test case is in the suite above it.
MORVEX_EXPORT void setTestSuiteAndTestCasePath(TestReportGenerator::TestType type,
                                               const TestResult::Entry &entry, QString *suitePath,
                                               QString *casePath);

/// A location that survives moving the suite: a URI with the scheme "x-testcase" or "x-testsuite"
/// for a file in one of these directories, otherwise a file URL. Empty for an empty path.
MORVEX_EXPORT std::string relativeURI(const QString &path, const QString &suiteDir,
                                      const QString &caseDir);
MORVEX_EXPORT std::string relativeURIForProtocol(const QString &path, const QDir &base,
                                                 const QString &scheme);
/// A path that begins like @p dir counts as being in it.
MORVEX_EXPORT bool isInDirectory(const QFileInfo &file, const QDir &dir);
MORVEX_EXPORT std::string vpURI(const TestResult::Entry &entry, const QString &suiteDir,
                                const QString &caseDir);
/// Relative to the result directory ("x-results") when there is one.
MORVEX_EXPORT std::string failedImageURI(const QString &path, const QString &suiteDir,
                                         const QString &caseDir, const QString &resultDir);
MORVEX_EXPORT std::string attachmentURI(const QString &path, const QString &suiteDir,
                                        const QString &caseDir, const QString &resultDir);
MORVEX_EXPORT std::string scriptFileURI(const QString &path, const QString &suiteDir,
                                        const QString &caseDir);

// Fields out of the texts that verifications write; empty when a text has another form.

/// The object name, with its property unless @p stripProperty is set.
MORVEX_EXPORT QString vpObjectFromMsg(const QString &msg, bool stripProperty);
MORVEX_EXPORT QString vpPropertyFromMsg(const QString &msg);
MORVEX_EXPORT QString vpFailedImgFromMsg(const QString &msg);
MORVEX_EXPORT QString extractScreenshotFromMsg(const QString &msg);
MORVEX_EXPORT QString extractScreenshotFromMsgAndDetail(const QString &msg, const QString &details);
/// Leaves both as they are when the text has another form.
MORVEX_EXPORT void expectedAndActualValueFromMsg(const QString &msg, QString *second,
                                                 QString *first);

/// With the offset from UTC that the time has.
MORVEX_EXPORT QString formatAsISO8601(const QDateTime &time);
MORVEX_EXPORT QString formatAsISO8601WithMs(const QDateTime &time);

MORVEX_EXPORT QString attachmentTypeToString(TestResult::AttachmentType type);

/// The start, end or skip of a section: what convertSectionEventToLogEvent may change.
MORVEX_EXPORT bool isSectionEvent(TestResult::ResultType type);

/// For formats without sections: a LOG entry that reports the section. Any other entry, and a
/// section of an unknown kind, comes back unchanged.
MORVEX_EXPORT TestResult::Entry convertSectionEventToLogEvent(const TestResult::Entry &entry);

/// Prints the entry to standard error, for debugging.
MORVEX_EXPORT void dumpEntry(const TestResult::Entry &entry);
MORVEX_EXPORT std::ostream &operator<<(std::ostream &stream, const TestResult::Entry &entry);

} // namespace Morvex
