#pragma once

#include "agent/pendingrequest.h"

namespace Morvex {

/// A request for an object of a name, looked for again and again until it is there or its time is
/// over. Deletes itself after the answer.
class PendingSearch : public PendingRequest
{
    Q_OBJECT

public:
    using PendingRequest::PendingRequest;

    void look();

protected:
    void timerEvent(QTimerEvent *event) override;
};

} // namespace Morvex
