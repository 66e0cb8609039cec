#pragma once

class QWidget;

namespace Morvex {

/// Whether the widget's class is one of the application or of its libraries, and not one of the
/// toolkit.
bool isOfOwnClass(const QWidget *widget);

} // namespace Morvex
