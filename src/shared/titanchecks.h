#pragma once

#include "morvex_export.h"
#include "shared/browserelement.h"
#include "shared/imagemask.h"

#include <QMap>
#include <QString>
#include <QStringList>

namespace Morvex {

/// How one property of an element is checked.
struct MORVEX_EXPORT TitanPropertyCheck
{
    enum Mode { Exact = 0, Wildcard = 1, Range = 2, RegularExpression = 3 };

    /// The pattern of the two modes that have one.
    QString value;
    /// By how much a number may differ, in the mode Range of a geometry.
    int delta = 0;
    /// A Mode; any other number compares as Exact does.
    int mode = Exact;
};

/// How the picture of an element is checked.
struct MORVEX_EXPORT VisualScreenshotCheck
{
    enum Algorithm { Strict = 0, Correlation = 1 };

    ImageMask mask;
    /// The least correlation.
    double threshold = 0;
    /// An Algorithm; with any other number no picture is as expected.
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
    /// Bits of Check.
    int failed = 0;
    /// Those that were made, failed ones included; 0 for an element that is its own counterpart.
    int checked = 0;
};

using TitanPropertyChecksOfElements = QMap<BrowserElement::Id, QMap<QString, TitanPropertyCheck>>;

} // namespace Morvex
