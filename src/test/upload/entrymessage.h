#pragma once

#include "test/testresult.h"

#include <QString>

#include <iosfwd>
#include <string>
#include <vector>

namespace Morvex {

/// The directories that the URIs of an upload are relative to; empty when not known.
struct UploadPlaces
{
    QString suitePath;
    QString casePath;
    /// For files that are attached.
    QString tempDir;
};

/// What the message of an entry tells beside the entry's own fields, and the files that follow it.
struct EntryMessage
{
    EntryMessage(const TestResult::Entry &entry, const UploadPlaces &places);

    std::string script;
    /// The URIs of the frames; empty for an entry that shows no stack.
    std::vector<std::string> stack;
    std::string kind;
    std::string location;
    int locationLine = -1;
    /// The name of an attached file; empty when there is none.
    std::string resource;
    std::string screenshot;

    /// What the resource is read from, if it is a file.
    QString resourceFile;
    QString screenshotFile;
    /// What the resource is otherwise.
    std::string tableDiff;
};

/// The fields of the message from the time on, each after a "|".
void writeEntryFields(std::ostream &stream, const TestResult::Entry &entry,
                      const EntryMessage &message);

/// Shows an entry on standard error.
void traceEntry(const TestResult::Entry &entry, const EntryMessage &message);

} // namespace Morvex
