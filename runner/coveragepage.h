#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace Morvex {

class BrowserElement;

/// "50.0 % (3 of 6)".
QString coverageText(const BrowserElement &element);

/// The windows below @p root in which there is something to use.
QList<const BrowserElement *> leastCoveredFirst(const BrowserElement &root);

/// A page for browsers, whole in itself: what was never used, window by window, then the tree of
/// elements with their counts.
QByteArray coveragePage(const BrowserElement &root);

} // namespace Morvex
