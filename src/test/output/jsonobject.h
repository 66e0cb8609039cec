#pragma once

#include "morvex_export.h"

#include <QLatin1String>
#include <QString>

#include <string>
#include <string_view>
#include <vector>

namespace Morvex {

/// One small object of a JSON report, written compactly and in ASCII, with its keys sorted. Keeps
/// its memory from one object to the next. Each key is added once.
class MORVEX_EXPORT JsonObject
{
public:
    void clear();
    bool isEmpty() const { return m_members.empty(); }

    void add(QLatin1String key, const QString &text);
    void add(QLatin1String key, std::string_view asciiText);
    void add(QLatin1String key, QLatin1String text);
    void addIfNotEmpty(QLatin1String key, const QString &text);
    void addIfNotEmpty(QLatin1String key, std::string_view asciiText);
    void addInteger(QLatin1String key, int value);
    /// As "lineNo"; a negative @p line is left out.
    void addLineNumber(int line);
    /// @p json is a whole value.
    void addValue(QLatin1String key, const std::string &json);

    /// Appends the object to @p out; without its braces when @p strip is set, for merging.
    void write(std::string &out, bool strip);

private:
    struct Member
    {
        QLatin1String key;
        std::size_t begin;
        std::size_t end;
    };

    void begin(QLatin1String key);
    void finish();

    std::vector<Member> m_members;
    // The values of all members.
    std::string m_values;
};

/// A JSON array of values that are written already.
MORVEX_EXPORT std::string jsonArray(const std::vector<std::string> &values);

} // namespace Morvex
