#pragma once

#include "test/testresult.h"

#include <QString>

namespace Morvex {

struct Xml3Elements;
class XmlStreamWriterQString;

/// The `verification` elements of an xml3 report, of which one is open at a time: it holds the
/// results of one verification.
class Xml3Verification
{
public:
    /// @p elements has to outlive this object.
    explicit Xml3Verification(Xml3Elements &elements);

    /// Of an entry that is the outcome of a check.
    void writeResult(const TestResult::Entry &entry);
    /// To be called before anything else is written.
    void close();

private:
    void open(const TestResult::Entry &entry);
    void startResult(const TestResult::Entry &entry, const char *element);
    void writeScriptedResult(const TestResult::Entry &entry);
    void writePropertyResult(const TestResult::Entry &entry);
    void writeTableResult(const TestResult::Entry &entry);
    void writeImageResult(const TestResult::Entry &entry, const char *element,
                          const char *imageElement);
    void writeObjectLocation(const TestResult::Entry &entry);

    Xml3Elements &m_elements;
    XmlStreamWriterQString &m_writer;
    // The vpCounter of the open one.
    int m_open;
};

} // namespace Morvex
