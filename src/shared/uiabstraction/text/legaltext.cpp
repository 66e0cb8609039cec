#include "shared/uiabstraction/text/legaltext.h"

#include "shared/uiabstraction/text/xmlcharacters.h"

namespace Morvex::UIAbstraction {
namespace {

bool isLegal(const QString &text, int i)
{
    const ushort unit = text.at(i).unicode();
    return unit < 0x20 ? isXmlLayout(unit) : !isNoCharacter(text, i);
}

} // namespace

QString legalText(const QString &text)
{
    QString legal = text;
    for (int i = 0; i < text.size(); ++i) {
        if (!isLegal(text, i))
            legal[i] = QChar::ReplacementCharacter;
    }
    return legal;
}

} // namespace Morvex::UIAbstraction
