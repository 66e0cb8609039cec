#include "shared/workbook/xlscell.h"

namespace Morvex {

QString XlsCell::asString() const
{
    switch (type) {
    case Boolean:
        return number != 0 ? QStringLiteral("true") : QStringLiteral("false");
    case Integer:
        return QString::number(static_cast<qint64>(number));
    case Float:
        return QString::number(number, 'g', 6);
    case String:
    case RichText:
        return text;
    case Empty:
    case Error:
        break;
    }
    return {};
}

QString XlsCell::toText() const
{
    return type == Empty || type == Error ? QStringLiteral("?") : asString();
}

} // namespace Morvex
