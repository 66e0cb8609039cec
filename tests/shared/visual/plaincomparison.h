#pragma once

#include "shared/titancmp.h"

namespace MorvexTest {

/// The comparison as plainly as it can be put: each pair makes the entries of all that is below it,
/// nothing is kept. Gives the flags of all failures; the root has its entry too.
int plainCompare(Morvex::BrowserElement *expected, Morvex::BrowserElement *actual,
                 const Morvex::TitanPropertyChecksOfElements &identifying,
                 const Morvex::TitanPropertyChecksOfElements &content,
                 const Morvex::TitanPropertyChecksOfElements &geometry,
                 const QMap<Morvex::BrowserElement::Id, Morvex::VisualScreenshotCheck> &screenshots,
                 const QList<Morvex::BrowserElement::Id> &subtreeExcluded,
                 QMap<Morvex::BrowserElement::Id, Morvex::TitanCompare> *result);

} // namespace MorvexTest
