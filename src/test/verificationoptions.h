#pragma once

#include "morvex_export.h"

namespace Morvex {

/// How a verification is carried out.
class MORVEX_EXPORT VerificationOptions
{
public:
    enum Flag {
        /// Results other than ERROR are not logged.
        SilentVerification = 1,
        /// The next four log a picture of the desktop with results of these types.
        ScreenshotOnPass = 2,
        ScreenshotOnFail = 4,
        ScreenshotOnWarning = 8,
        ScreenshotOnError = 16,
        /// The first check that fails ends the verification point.
        StopOnFail = 32
    };

    int flags() const { return m_flags; }

    /// 0 tests for no flag at all.
    bool testFlag(Flag flag) const { return flag == 0 ? m_flags == 0 : (m_flags & flag) == flag; }
    void setFlag(Flag flag) { m_flags |= flag; }
    void clearFlag(Flag flag) { m_flags &= ~flag; }
    void setFlag(Flag flag, bool on) { on ? setFlag(flag) : clearFlag(flag); }

    /// Both in milliseconds.
    int screenshotDelay() const { return m_screenshotDelay; }
    void setScreenshotDelay(int milliseconds) { m_screenshotDelay = milliseconds; }
    int retryDuration() const { return m_retryDuration; }
    void setRetryDuration(int milliseconds) { m_retryDuration = milliseconds; }

private:
    int m_flags = 0;
    int m_screenshotDelay = 1000;
    int m_retryDuration = 0;
};

} // namespace Morvex
