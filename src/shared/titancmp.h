#pragma once

#include "morvex_export.h"
#include "shared/titanchecks.h"

#include <QList>
#include <QMap>

class QImage;

namespace Morvex {

/// Whether all checks hold. @p expected and @p actual are the artificial roots above two trees of
/// elements. Siblings may be in another order; each expected element is compared with the actual
/// one that fits best. Elements have no check of a kind unless there is one for their id;
/// @p subtreeExcluded has the ids of those whose children are not looked at.
///
/// @p result, which may be null, is replaced: it gets an entry for each expected element that was
/// compared: an element has none when there is no counterpart of its class, or when one above it is
/// identified as another one.
MORVEX_EXPORT bool titanCompare(BrowserElement *expected, BrowserElement *actual,
                                const TitanPropertyChecksOfElements &identifying,
                                const TitanPropertyChecksOfElements &content,
                                const TitanPropertyChecksOfElements &geometry,
                                const QMap<BrowserElement::Id, VisualScreenshotCheck> &screenshots,
                                const QList<BrowserElement::Id> &subtreeExcluded,
                                QMap<BrowserElement::Id, TitanCompare> *result);

/// The pictures of two elements as they are compared, without those of their children. @p sameSize
/// scales the actual one to the size of the expected one. False when there is none of one of them.
MORVEX_EXPORT bool visualMaskImages(const BrowserElement *expected, const BrowserElement *actual,
                                    QImage *expectedImage, QImage *actualImage, bool sameSize);

} // namespace Morvex
