#pragma once

#include <QCoreApplication>

#include <memory>

namespace Morvex {

/// The application object of a process that has windows: those of the application under test.
/// Where there is no display, or none that answers, they are drawn into memory.
std::unique_ptr<QCoreApplication> makeWindowApplication(int &argc, char **argv);

} // namespace Morvex
