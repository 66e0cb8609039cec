#pragma once

#include "morvex_export.h"

#include <QString>

#include <cstdio>

class QFile;

namespace Morvex {

// A file that is open for one report: no other report, of this run or of another one, can take it
// before it is closed. A device, and a file of a file system without locks, can be taken by many.
// Child processes do not inherit it.

enum class TargetContent { Replaced, ReplacedAndRead, Kept };

/// Opens @p file without a buffer on @p fileName, at its start, or with TargetContent::Kept for
/// writing at its end. Its content is dropped only once it is sure that no other report has it.
/// Returns why it can't be opened, empty on success; @p isTaken, which may be null, says whether
/// another report is the reason.
[[nodiscard]] MORVEX_EXPORT QString openReportTarget(const QString &fileName, TargetContent content,
                                                     QFile *file, bool *isTaken = nullptr);

/// Leaves a file that holds something, or that another report has taken, alone and opens the first
/// name with a number that is free instead.
[[nodiscard]] MORVEX_EXPORT QString openFreeReportTarget(const QString &fileName, QFile *file);

/// While one lives, the regular files that this process opens as targets keep what they hold, until
/// it is known that all reports of a run can be made. Of the main thread; one at a time.
class MORVEX_EXPORT TargetsKept
{
public:
    TargetsKept();
    /// Without replace(), all are left as they were.
    ~TargetsKept();

    TargetsKept(const TargetsKept &) = delete;
    TargetsKept &operator=(const TargetsKept &) = delete;

    /// Drops what they hold now. Returns an error text, empty on success.
    [[nodiscard]] QString replace();

private:
    bool m_isReplaced = false;
};

/// The stream that an empty path, "/dev/stdout" or "/dev/stderr" stands for; null for any other.
[[nodiscard]] MORVEX_EXPORT std::FILE *standardStream(const QString &path);

/// Until this process ends no report can take by its name the file that @p stream goes to, if it is
/// one. Other reports can use the stream too. Returns an error text when a report of this process
/// has the file already, empty otherwise.
[[nodiscard]] MORVEX_EXPORT QString takeStandardStream(std::FILE *stream);

} // namespace Morvex
