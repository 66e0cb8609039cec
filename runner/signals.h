#pragma once

namespace Morvex {

class Cancellation;

/// As long as it lives, SIGINT, SIGTERM and SIGHUP request the cancellation; a second signal kills
/// what runs and ends the process with status 130. One object at a time.
class CancelOnSignals
{
public:
    explicit CancelOnSignals(Cancellation *cancellation);
    ~CancelOnSignals();

    CancelOnSignals(const CancelOnSignals &) = delete;
    CancelOnSignals &operator=(const CancelOnSignals &) = delete;
};

} // namespace Morvex
