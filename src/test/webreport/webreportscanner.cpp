#include "test/webreport/webreportscanner.h"

#include <cstring>

namespace Morvex {
namespace {

// How deep the members of the document and of the node of the run are.
const std::size_t documentDepth = 1;
const std::size_t runDepth = 3;

bool isDigit(char byte)
{
    return byte >= '0' && byte <= '9';
}

bool isHexDigit(char byte)
{
    return isDigit(byte) || (byte >= 'a' && byte <= 'f') || (byte >= 'A' && byte <= 'F');
}

bool isControl(char byte)
{
    return static_cast<unsigned char>(byte) < 0x20;
}

} // namespace

WebReportScanner::WebReportScanner(const char *begin, const char *end)
    : m_position(begin)
    , m_end(end)
{
}

WebReportScanner::Outcome WebReportScanner::scan()
{
    do {
        skipBlanks();
        if (isAtEnd())
            return Cut;
        const Outcome outcome = readNext();
        if (outcome != Complete)
            return outcome;
    } while (!m_levels.empty());
    return Complete;
}

WebReportScanner::Outcome WebReportScanner::readNext()
{
    switch (m_expected) {
    case Key:
    case Value:
        break;
    case KeyOrEnd:
    case ValueOrEnd:
        if (*m_position == '}' || *m_position == ']')
            return readSeparatorOrEnd();
        break;
    case SeparatorOrEnd:
        return readSeparatorOrEnd();
    }
    return m_expected == Key || m_expected == KeyOrEnd ? readKey() : readValue();
}

WebReportScanner::Outcome WebReportScanner::readValue()
{
    const char first = *m_position;
    if (first == '{' || (first == '[' && !m_levels.empty())) {
        open(first == '{');
        return Complete;
    }
    Outcome outcome = Broken;
    if (m_levels.empty())
        return outcome;
    if (first == '"')
        outcome = readString();
    else if (first == 't')
        outcome = readWord("true");
    else if (first == 'f')
        outcome = readWord("false");
    else if (first == 'n')
        outcome = readWord("null");
    else
        outcome = readNumber();
    if (outcome == Complete)
        endValue();
    return outcome;
}

WebReportScanner::Outcome WebReportScanner::readKey()
{
    const char *begin = m_position;
    const Outcome outcome = readString();
    if (outcome != Complete)
        return outcome;
    m_key.assign(begin + 1, m_position - 1);
    skipBlanks();
    if (isAtEnd())
        return Cut;
    if (*m_position != ':')
        return Broken;
    ++m_position;
    m_expected = Value;
    return Complete;
}

WebReportScanner::Outcome WebReportScanner::readSeparatorOrEnd()
{
    const char byte = *m_position;
    if (byte == ',') {
        ++m_position;
        m_expected = isObject() ? Key : Value;
        return Complete;
    }
    if (byte != (isObject() ? '}' : ']'))
        return Broken;
    close();
    return Complete;
}

WebReportScanner::Outcome WebReportScanner::readString()
{
    if (*m_position != '"')
        return Broken;
    for (++m_position; !isAtEnd(); ++m_position) {
        if (*m_position == '"') {
            ++m_position;
            return Complete;
        }
        if (isControl(*m_position))
            return Broken;
        if (*m_position == '\\') {
            const Outcome outcome = readEscape();
            if (outcome != Complete)
                return outcome;
        }
    }
    return Cut;
}

// Ends on the last byte of the escape.
WebReportScanner::Outcome WebReportScanner::readEscape()
{
    if (++m_position == m_end)
        return Cut;
    if (*m_position != 'u')
        return *m_position != '\0' && std::strchr("\"\\/bfnrt", *m_position) ? Complete : Broken;
    for (int digit = 0; digit < 4; ++digit) {
        if (++m_position == m_end)
            return Cut;
        if (!isHexDigit(*m_position))
            return Broken;
    }
    return Complete;
}

// Complete only with a byte after it: a cut number may have had more digits.
WebReportScanner::Outcome WebReportScanner::readNumber()
{
    if (*m_position == '-')
        ++m_position;
    const char *first = m_position;
    Outcome outcome = readDigits();
    if (outcome == Complete && *first == '0' && m_position - first > 1)
        return Broken;
    if (outcome == Complete && *m_position == '.') {
        ++m_position;
        outcome = readDigits();
    }
    if (outcome == Complete && (*m_position == 'e' || *m_position == 'E')) {
        ++m_position;
        if (!isAtEnd() && (*m_position == '+' || *m_position == '-'))
            ++m_position;
        outcome = readDigits();
    }
    return outcome;
}

WebReportScanner::Outcome WebReportScanner::readDigits()
{
    const char *first = m_position;
    while (!isAtEnd() && isDigit(*m_position))
        ++m_position;
    if (isAtEnd())
        return Cut;
    return m_position == first ? Broken : Complete;
}

WebReportScanner::Outcome WebReportScanner::readWord(const char *word)
{
    for (; *word; ++word, ++m_position) {
        if (isAtEnd())
            return Cut;
        if (*m_position != *word)
            return Broken;
    }
    return Complete;
}

void WebReportScanner::open(bool isObject)
{
    ++m_position;
    const bool isEntryPlace = m_levels.empty() || m_levels.back() == TestArray;
    if (isObject) {
        m_levels += isEntryPlace ? EntryObject : OtherObject;
    } else if (m_levels.back() == EntryObject && m_key == "tests") {
        m_levels.back() = TestObject;
        m_levels += TestArray;
    } else {
        m_levels += OtherArray;
    }
    if (m_levels.back() == OtherObject || m_levels.back() == OtherArray)
        ++m_otherLevels;
    m_expected = isObject ? KeyOrEnd : ValueOrEnd;
    rememberClosing();
}

void WebReportScanner::close()
{
    ++m_position;
    if (m_levels.back() == OtherObject || m_levels.back() == OtherArray)
        --m_otherLevels;
    const bool isTestArray = m_levels.back() == TestArray;
    m_levels.pop_back();
    m_key.clear();
    m_expected = SeparatorOrEnd;
    // The end of a test's array is no member to be judged by its key.
    if (isTestArray)
        rememberClosing();
    else if (!m_levels.empty())
        endValue();
}

void WebReportScanner::endValue()
{
    if (m_levels.back() == TestObject) {
        m_isEnded = m_isEnded || (m_levels.size() == runDepth && m_key == "stop");
        m_isMarked = m_isMarked || (m_levels.size() == documentDepth && m_key == "ended");
    }
    m_expected = SeparatorOrEnd;
    rememberClosing();
}

void WebReportScanner::rememberClosing()
{
    if (m_otherLevels > 0 || (m_levels.back() != TestArray && m_levels.back() != TestObject))
        return;
    m_closingPosition = m_position;
    m_closingLevels = m_levels;
}

std::string WebReportScanner::closingText() const
{
    std::string text;
    for (auto level = m_closingLevels.rbegin(); level != m_closingLevels.rend(); ++level) {
        const bool isDocument = level + 1 == m_closingLevels.rend();
        if (isDocument && !m_isEnded && !m_isMarked)
            text += ",\"ended\":false";
        text += *level == TestArray ? ']' : '}';
    }
    return text;
}

bool WebReportScanner::isObject() const
{
    return m_levels.back() != TestArray && m_levels.back() != OtherArray;
}

void WebReportScanner::skipBlanks()
{
    while (!isAtEnd() && (*m_position == ' ' || *m_position == '\t' || *m_position == '\n' ||
                          *m_position == '\r'))
        ++m_position;
}

} // namespace Morvex
