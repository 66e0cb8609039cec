#pragma once

#include "support/xmldocument.h"
#include "test/testreportgenerator.h"

#include <functional>
#include <memory>
#include <vector>

namespace MorvexTest {

using Entries = std::vector<Morvex::TestResult::Entry>;

/// The types of all entries, in order.
std::vector<Morvex::TestResult::ResultType> allTypes();

/// One entry at noon of a day in local time.
Morvex::TestResult::Entry entryOf(Morvex::TestResult::ResultType type, const QString &message,
                                  const QString &details = {});

/// One entry of @p type at a fixed time with an offset of one hour, and nothing else.
Morvex::TestResult::Entry plainEntry(Morvex::TestResult::ResultType type,
                                     const QString &message = {});

/// An entry of @p type with all other fields that any entry may have set to distinct values, table
/// differences included.
Morvex::TestResult::Entry fullEntry(Morvex::TestResult::ResultType type);

/// A verification result of @p type with texts as the verifications write them.
Morvex::TestResult::Entry verificationEntry(Morvex::TestResult::ResultType type,
                                            Morvex::TestResult::VPType vpType, int vpCounter);

/// All fields of two entries are equal.
bool areEqual(const Morvex::TestResult::Entry &a, const Morvex::TestResult::Entry &b);

/// A whole run in which each type of entry and each kind of verification comes: "tst_a" with a
/// failed and a good attempt.
Entries sampleRun();

/// A run with a LOG entry for each of @p messages.
Entries runOfMessages(const QStringList &messages);

/// For a value of the option that names reports. Ends the test program when it can't be made.
std::unique_ptr<Morvex::TestReportGenerator>
makeReport(const QString &value, QString *resultDir = nullptr,
           Morvex::TestReportGenerator::TestType type = Morvex::TestReportGenerator::TEST_SUITE);

void replay(const Entries &entries, Morvex::TestReportGenerator *generator);

/// A run to feed to reports, without START and END.
struct SampleRun
{
    const char *name;
    void (*log)(Morvex::TestResult &result);
};

/// The situations that every report has to get right: from an empty run to one with all that may go
/// wrong at once.
const std::vector<SampleRun> &allRuns();

/// START, the entries of the run and END.
void logRun(const SampleRun &run, Morvex::TestResult &result);

/// What the file of the format @p keyword holds when all that @p log logs has been handled and the
/// format is deleted.
QByteArray reportOf(const QString &keyword, const std::function<void(Morvex::TestResult &)> &log);

/// The report of a whole run.
QByteArray reportOf(const QString &keyword, const SampleRun &run);

/// A run with START, one entry and END.
QByteArray reportOf(const QString &keyword, const Morvex::TestResult::Entry &entry);

/// These entries and no others.
QByteArray
reportOf(const QString &keyword, const Entries &entries,
         Morvex::TestReportGenerator::TestType type = Morvex::TestReportGenerator::TEST_SUITE);

/// U+0001 to U+00A0 and U+FFFE, U+FFFF, halves of surrogate pairs, markup, a terminator of a CDATA
/// section, an escape sequence of a terminal and a character beyond the BMP.
QString hostileText();

/// The hostile text and others that are hard on a format: long ones, a null character, what ends a
/// CDATA section in all its places.
QStringList awkwardTexts();

/// What is to be read from a report for @p text.
QString withoutUnwritable(const QString &text, bool dropsControls);

} // namespace MorvexTest
