#pragma once

#include "test/testreportgenerator.h"

#include <QStringList>

#include <vector>

namespace MorvexTest {

/// One entry of @p type at a fixed time with an offset of one hour, and nothing else.
Morvex::TestResult::Entry plainEntry(Morvex::TestResult::ResultType type,
                                     const QString &message = QString());

/// A verification result of @p type with texts as the verifications write them.
Morvex::TestResult::Entry verificationEntry(Morvex::TestResult::ResultType type,
                                            Morvex::TestResult::VPType vpType, int vpCounter);

/// A whole run in which each type of entry and each kind of verification comes: "tst_a" with a
/// failed and a good attempt.
std::vector<Morvex::TestResult::Entry> sampleRun();

/// A run with a LOG entry for each of @p messages.
std::vector<Morvex::TestResult::Entry> runOfMessages(const QStringList &messages);

void replay(const std::vector<Morvex::TestResult::Entry> &entries,
            Morvex::TestReportGenerator *generator);

/// Texts that are hard on a format: each control character, what ends a CDATA section in all its
/// places, lone surrogates, and others.
QStringList awkwardTexts();

/// What is to be read from a report for @p text.
QString withoutUnwritable(const QString &text, bool dropsControls);

} // namespace MorvexTest
