#pragma once

#include <functional>

namespace Morvex {

/// Owns the application object of the process, which has no windows at first: most test cases have
/// no use for them, and their start takes longer than all the rest. One object a process; the
/// arguments have to outlive it.
class ApplicationObject
{
public:
    ApplicationObject(int &argc, char **argv);
    ~ApplicationObject();

    ApplicationObject(const ApplicationObject &) = delete;
    ApplicationObject &operator=(const ApplicationObject &) = delete;
};

/// Replaces the application object by one that has windows, those of the application under test;
/// does nothing when there is one. Where there is no display, or none that answers, they are drawn
/// into memory. Not to be called while an event is handled: pending ones are dropped, and socket
/// notifiers made before are dead.
void startWindowSystem();

/// Calls @p callback after each replacement, to make again what was lost by it; null for none.
void setWindowSystemCallback(std::function<void()> callback);

} // namespace Morvex
