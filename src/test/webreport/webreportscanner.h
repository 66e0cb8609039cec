#pragma once

#include <string>

namespace Morvex {

/// Reads one JSON document of the web report that may be cut at any byte, in one pass and without
/// calling itself, and finds the last place at which it can be closed so that only what is not
/// complete is lost.
class WebReportScanner
{
public:
    enum Outcome { Complete, Cut, Broken };

    /// The text from @p begin to @p end has to outlive this object.
    WebReportScanner(const char *begin, const char *end);

    Outcome scan();

    /// After the last byte of the document when it is complete; the first byte that can't be part
    /// of one when it is broken.
    const char *position() const { return m_position; }

    /// Where a cut document can be closed; null when it is cut before its results.
    const char *closingPosition() const { return m_closingPosition; }
    /// What closes it there, and marks it as not ended if it is so.
    std::string closingText() const;

    /// Whether the end of the run is in the document.
    bool isEnded() const { return m_isEnded; }

private:
    // Tests and results, in whose arrays a document can be closed, and all other values.
    enum Level : char {
        // A test before its array of children, or a result.
        EntryObject = 'e',
        // A test from its array of children on, or the document.
        TestObject = 'd',
        TestArray = 't',
        OtherObject = 'o',
        OtherArray = 'a'
    };
    enum Expected { Value, ValueOrEnd, Key, KeyOrEnd, SeparatorOrEnd };

    Outcome readNext();
    Outcome readValue();
    Outcome readKey();
    Outcome readSeparatorOrEnd();
    Outcome readString();
    Outcome readEscape();
    Outcome readNumber();
    Outcome readDigits();
    Outcome readWord(const char *word);

    void open(bool isObject);
    void close();
    void endValue();
    void rememberClosing();

    bool isAtEnd() const { return m_position == m_end; }
    bool isObject() const;
    void skipBlanks();

    const char *m_position;
    const char *const m_end;
    Expected m_expected = Value;
    // Innermost last.
    std::string m_levels;
    int m_otherLevels = 0;
    // Of the member that is being read.
    std::string m_key;
    const char *m_closingPosition = nullptr;
    std::string m_closingLevels;
    bool m_isEnded = false;
    bool m_isMarked = false;
};

} // namespace Morvex
