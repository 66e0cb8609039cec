#include "shared/xml/elementtext.h"

#include <tinyxml.h>

namespace Morvex {

KeepWhiteSpace::KeepWhiteSpace()
    : m_condensed(TiXmlBase::IsWhiteSpaceCondensed())
{
    TiXmlBase::SetCondenseWhiteSpace(false);
}

KeepWhiteSpace::~KeepWhiteSpace()
{
    TiXmlBase::SetCondenseWhiteSpace(m_condensed);
}

std::string wholeText(const TiXmlElement &element)
{
    std::string text;
    for (const TiXmlNode *node = element.FirstChild(); node; node = node->NextSibling()) {
        if (node->ToText())
            text += node->ValueStr();
    }
    return text;
}

} // namespace Morvex
