#pragma once

#include "morvex_export.h"
#include "shared/browserelement.h"
#include "shared/imagemask.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

class QImage;

namespace Morvex {

/// How one property of an element is checked.
struct MORVEX_EXPORT TitanPropertyCheck
{
    enum Mode { Exact = 0, Wildcard = 1, Range = 2, RegularExpression = 3 };

    /// The pattern of the two modes that have one.
    QString value;
    /// By how much a number may differ, in the mode Range of a geometry.
    int delta = 0;
    int mode = Exact;
};

/// How the picture of an element is checked.
struct MORVEX_EXPORT VisualScreenshotCheck
{
    enum Algorithm { Strict = 0, Correlation = 1 };

    ImageMask mask;
    /// The least correlation.
    double threshold = 0;
    int algorithm = Strict;
};

/// What came out for one expected element.
struct MORVEX_EXPORT TitanCompare
{
    enum Check {
        ScreenshotCheck = 1,
        GeometryCheck = 2,
        ContentCheck = 4,
        IdentifyingCheck = 8,
        HierarchyCheck = 16,
        ClassMismatch = 32
    };

    /// Not owned, as actual.
    BrowserElement *expected = nullptr;
    BrowserElement *actual = nullptr;
    QStringList identifyingFailures;
    QStringList contentFailures;
    QStringList geometryFailures;
    int failed = 0;
    int checked = 0;
};

using TitanPropertyChecksOfElements = QMap<BrowserElement::Id, QMap<QString, TitanPropertyCheck>>;

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
