#pragma once

#include "morvex_export.h"
#include "test/output/jsonobject.h"

#include <ostream>
#include <string>
#include <vector>

namespace Morvex {

/// Writes the frame of a JSON report as it goes, and holds nothing but the closers of the open
/// values. The text goes to the stream in one piece with each flush.
class MORVEX_EXPORT JsonReportWriter
{
public:
    /// Keeps a reference to @p stream.
    explicit JsonReportWriter(std::ostream &stream);

    void writeStartObject();
    void writeStartObject(const char *name);
    void writeStartArray();
    void writeStartArray(const char *name);
    void writeEndObject() { writeCloser(); }
    void writeEndArray();
    void writeSeparator() { m_text += ','; }
    /// What goes between two values of the innermost array.
    void handleChildrenSeparator();

    /// The object for writeData. Kept for its memory.
    JsonObject object;
    /// Without its braces when @p strip is set, for merging into an open object.
    void writeData(bool strip) { object.write(m_text, strip); }

    void closeOpenedValues();
    void flush();

private:
    void writeName(const char *name);
    void writeCloser();

    std::ostream &m_stream;
    // Innermost last.
    std::vector<char> m_closers;
    // One for each open array.
    std::vector<bool> m_hasChildren;
    // Kept for its memory.
    std::string m_text;
};

} // namespace Morvex
