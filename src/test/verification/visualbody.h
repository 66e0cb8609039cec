#pragma once

#include "morvex_export.h"
#include "shared/titancmp.h"

#include <QString>

class QDomElement;

namespace Morvex {

/// What a visual verification point expects.
struct MORVEX_EXPORT VisualBody
{
    /// The artificial root of the stored tree.
    BrowserElement stored{nullptr, QStringLiteral("stored")};
    TitanPropertyChecksOfElements identifying;
    TitanPropertyChecksOfElements content;
    TitanPropertyChecksOfElements geometry;
    QMap<BrowserElement::Id, VisualScreenshotCheck> screenshots;
    QList<BrowserElement::Id> subtreeExcluded;

    /// Takes over what an element `Verification` holds. False when its tree can't be read; checks
    /// that make no sense are none.
    bool read(const QDomElement &verification);

    /// Whether all checks hold.
    bool compare(BrowserElement *live, QMap<BrowserElement::Id, TitanCompare> *result);
};

} // namespace Morvex
