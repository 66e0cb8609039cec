#pragma once

#include "morvex_export.h"
#include "test/output/reportfile.h"
#include "test/output/xmlelement.h"
#include "test/report/iso8601time.h"
#include "test/report/runwatch.h"
#include "test/testreportgenerator.h"

#include <QString>

#include <memory>
#include <vector>

namespace Morvex {

/// The nested XML log as a file that grows: each entry is in the file when it has been handled. The
/// file of a crashed run lacks the close tags of what was open.
///
/// A verification element holds the results of one verification point. A result of another
/// verification, one outside of verifications, and a message end it.
class MORVEX_EXPORT Xml2ReportGenerator : public TestReportGenerator
{
public:
    ~Xml2ReportGenerator() override;

    /// Leaves a file that holds something alone and takes the next free name. From @p version 1 on
    /// the kinds of verifications and what is known of failed ones are told, from 2 on the
    /// differences of tables.
    static Result create(const QString &path, int version);

    void generateSummary() override;

protected:
    void doHandleEntry(const TestResult::Entry &entry) override;

private:
    Xml2ReportGenerator(std::unique_ptr<ReportFile> file, int version);

    void writeEntry(const TestResult::Entry &entry);
    void openTest(const QString &name, const QDateTime &time);
    void closeTest(const QDateTime &time);
    void closeRun(const QDateTime &time);
    void openVerification(const TestResult::Entry &entry);
    void closeVerification();
    void writeResult(const TestResult::Entry &entry);
    void writeMessage(const TestResult::Entry &entry);

    QString timeText(const QDateTime &time);
    XmlElement rootElement() const;
    QString vpTypeAttributeValue(TestResult::VPType type) const;
    void setVpTypeAttribute(XmlElement &element, const TestResult::Entry &entry) const;
    void addVersionedDescriptions(XmlElement &result, const TestResult::Entry &entry) const;
    void dump(const XmlElement &element, WriteMode mode);
    void flush();

    std::unique_ptr<ReportFile> m_file;
    int m_version;
    int m_indent = 0;
    int m_openTests = 0;
    bool m_isVerificationOpen = false;
    int m_openVpCounter = 0;
    RunWatch m_run;
    Iso8601Time m_times;
    // What the current entry adds to the file.
    QByteArray m_text;
};

} // namespace Morvex
