#include "test/report/resultentries.h"

#include "shared/system/clock.h"
#include "test/report/resultlabels.h"

#include <QDir>

namespace Morvex {

using Entry = TestResult::Entry;

Entry makeEntry(const QDateTime &time, TestResult::ResultType type, const QString &message,
                const QString &details)
{
    Entry entry;
    entry.time = time;
    entry.type = type;
    entry.message = message;
    entry.details = details;
    return entry;
}

Entry makeEntry(TestResult::ResultType type, const QString &message, const QString &details)
{
    return makeEntry(currentLocalTime(), type, message, details);
}

void setStack(Entry &entry, const std::vector<LineInfo> &stack)
{
    entry.stack = stack;
    if (!stack.empty())
        entry.line = stack.front();
}

void setLine(Entry &entry, const LineInfo &line)
{
    entry.line = line;
    if (line.isValid())
        entry.stack.push_back(line);
}

Entry makeStartEntry(TestResult::ResultType type, const QString &name, const QDir &dir,
                     const QString &summary, const QString &description)
{
    Entry entry = makeEntry(type, startMessage(name), startDetails(name));
    entry.line = LineInfo(dir.absolutePath(), -1);
    entry.summary = summary;
    entry.description = description;
    return entry;
}

Entry makeAttachmentEntry(TestResult::ResultType type, TestResult::AttachmentType attachmentType,
                          const QString &message, const QString &uri,
                          const std::vector<LineInfo> &stack)
{
    Entry entry = makeEntry(type, message, uri);
    setStack(entry, stack);
    entry.attachmentType = attachmentType;
    entry.attachmentUri = uri;
    return entry;
}

Entry makeVPEntry(const QDateTime &time, TestResult::ResultType type, const QString &message,
                  const QString &details, const std::vector<LineInfo> &stack, const QString &vpName,
                  TestResult::VPType vpType, const QFileInfo &vpFile, const QString &info)
{
    Entry entry = makeEntry(time, type, message, details);
    setStack(entry, stack);
    entry.vpName = vpName;
    entry.vpType = vpType;
    entry.vpFile = vpFile;
    entry.info = info;
    return entry;
}

} // namespace Morvex
