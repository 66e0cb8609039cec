#pragma once

#include "test/testresult.h"

namespace Morvex {

// Entries with the fields that their kind has, for a log.

TestResult::Entry makeEntry(const QDateTime &time, TestResult::ResultType type,
                            const QString &message, const QString &details);
/// At this moment.
TestResult::Entry makeEntry(TestResult::ResultType type, const QString &message,
                            const QString &details);

/// The start of a run or of a test case that is in @p dir.
TestResult::Entry makeStartEntry(TestResult::ResultType type, const QString &name, const QDir &dir,
                                 const QString &summary, const QString &description);

TestResult::Entry makeAttachmentEntry(TestResult::ResultType type,
                                      TestResult::AttachmentType attachmentType,
                                      const QString &message, const QString &uri,
                                      const std::vector<LineInfo> &stack);

TestResult::Entry makeVPEntry(const QDateTime &time, TestResult::ResultType type,
                              const QString &message, const QString &details,
                              const std::vector<LineInfo> &stack, const QString &vpName,
                              TestResult::VPType vpType, const QFileInfo &vpFile,
                              const QString &info);

/// The innermost frame is the place of the entry.
void setStack(TestResult::Entry &entry, const std::vector<LineInfo> &stack);
/// A place that is valid is the stack as well.
void setLine(TestResult::Entry &entry, const LineInfo &line);

} // namespace Morvex
