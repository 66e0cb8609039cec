#pragma once

#include <QString>
#include <QStringList>

class QObject;
class QWidget;

namespace Morvex {

// What distinguishes windows and elements from others when usage is counted. It is the same in each
// run.

/// The text, or the title; empty for what users type.
QString steadyTextOf(const QObject *object);

/// What is added to the class of a window without an object name: its title, or else what is in it.
/// Empty for an empty window.
QString distinctionOfUnnamed(const QWidget &window);

/// By what windows that exist at the same time are sorted before they get numbers.
QStringList orderOfUnnamed(const QWidget &window);

} // namespace Morvex
