#include "test/report/jsonreportwriter.h"

namespace Morvex {

JsonReportWriter::JsonReportWriter(std::ostream &stream)
    : m_stream(stream)
{
}

void JsonReportWriter::writeStartObject()
{
    m_text += '{';
    m_closers.push_back('}');
}

void JsonReportWriter::writeStartObject(const char *name)
{
    writeName(name);
    writeStartObject();
}

void JsonReportWriter::writeStartArray()
{
    m_text += '[';
    m_closers.push_back(']');
    m_hasChildren.push_back(false);
}

void JsonReportWriter::writeStartArray(const char *name)
{
    writeName(name);
    writeStartArray();
}

void JsonReportWriter::writeName(const char *name)
{
    m_text += '"';
    m_text += name;
    m_text += "\":";
}

void JsonReportWriter::writeEndArray()
{
    writeCloser();
    if (!m_hasChildren.empty())
        m_hasChildren.pop_back();
}

void JsonReportWriter::writeCloser()
{
    if (m_closers.empty())
        return;
    m_text += m_closers.back();
    m_closers.pop_back();
}

void JsonReportWriter::closeOpenedValues()
{
    m_text.append(m_closers.rbegin(), m_closers.rend());
    m_closers.clear();
    m_hasChildren.clear();
    flush();
}

void JsonReportWriter::handleChildrenSeparator()
{
    if (m_hasChildren.empty())
        return;
    if (m_hasChildren.back())
        writeSeparator();
    m_hasChildren.back() = true;
}

void JsonReportWriter::flush()
{
    m_stream.write(m_text.data(), static_cast<std::streamsize>(m_text.size()));
    m_text.clear();
}

} // namespace Morvex
