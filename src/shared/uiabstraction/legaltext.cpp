#include "shared/uiabstraction/legaltext.h"

namespace Morvex::UIAbstraction {
namespace {

bool isPartOfPair(const QString &text, int i)
{
    const QChar unit = text.at(i);
    if (unit.isHighSurrogate())
        return i + 1 < text.size() && text.at(i + 1).isLowSurrogate();
    return i > 0 && text.at(i - 1).isHighSurrogate();
}

bool isLegal(const QString &text, int i)
{
    const ushort unit = text.at(i).unicode();
    if (unit < 0x20)
        return unit == '\t' || unit == '\n' || unit == '\r';
    return unit < 0xfffe && (!text.at(i).isSurrogate() || isPartOfPair(text, i));
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
