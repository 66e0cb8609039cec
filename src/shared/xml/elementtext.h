#pragma once

#include "morvex_export.h"

#include <string>

class TiXmlElement;

namespace Morvex {

/// While it lives, XML is parsed with all white space of texts kept, but for texts of nothing else.
/// The parser knows this only as a setting of the whole process.
class MORVEX_EXPORT KeepWhiteSpace
{
public:
    KeepWhiteSpace();
    ~KeepWhiteSpace();

    KeepWhiteSpace(const KeepWhiteSpace &) = delete;
    KeepWhiteSpace &operator=(const KeepWhiteSpace &) = delete;

private:
    bool m_condensed;
};

/// The text directly in an element, whatever pieces it comes in.
MORVEX_EXPORT std::string wholeText(const TiXmlElement &element);

} // namespace Morvex
