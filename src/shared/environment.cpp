#include "shared/environment.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iconv.h>
#include <langinfo.h>

namespace Morvex {
namespace {

bool isAscii(const std::string &text)
{
    return std::all_of(text.begin(), text.end(),
                       [](unsigned char character) { return character < 0x80; });
}

std::string runConversion(iconv_t converter, const std::string &text)
{
    std::string source = text;
    char *in = source.data();
    std::size_t inLeft = source.size();
    // No encoding of a locale takes more than four bytes for what UTF-8 writes in one or more, nor
    // the other way round; the rest is room for a shift sequence.
    std::string converted(source.size() * 4 + 16, '\0');
    char *out = converted.data();
    std::size_t outLeft = converted.size();
    const auto failed = static_cast<std::size_t>(-1);
    if (iconv(converter, &in, &inLeft, &out, &outLeft) == failed ||
        iconv(converter, nullptr, nullptr, &out, &outLeft) == failed) {
        std::perror("iconv");
        return text;
    }
    converted.resize(converted.size() - outLeft);
    return converted;
}

std::string convert(const std::string &text, const char *from, const char *to)
{
    // All encodings of locales on this platform are supersets of ASCII.
    if (isAscii(text))
        return text;
    const iconv_t converter = iconv_open(to, from);
    if (converter == reinterpret_cast<iconv_t>(-1)) {
        std::perror("iconv_open");
        return text;
    }
    std::string converted = runConversion(converter, text);
    iconv_close(converter);
    return converted;
}

} // namespace

std::string utf8ToLocal8Bit(const std::string &text)
{
    return convert(text, "UTF-8", nl_langinfo(CODESET));
}

std::string local8BitToUTF8(const std::string &text)
{
    return convert(text, nl_langinfo(CODESET), "UTF-8");
}

std::string Environment::getVariable(const std::string &name)
{
    const char *value = std::getenv(utf8ToLocal8Bit(name).c_str());
    return value ? local8BitToUTF8(value) : std::string();
}

void Environment::setVariable(const std::string &name, const std::string &value)
{
    setenv(utf8ToLocal8Bit(name).c_str(), utf8ToLocal8Bit(value).c_str(), 1);
}

void Environment::unsetVariable(const std::string &name)
{
    unsetenv(utf8ToLocal8Bit(name).c_str());
}

} // namespace Morvex
