#pragma once

#include "objectmodel/inspector.h"

#include <memory>

namespace MorvexTest {

/// The object model over the widgets of this process: directly, or with MORVEX_TEST_BACKEND=remote
/// by the agent, at the other end of a connection. Each program that uses it is run both ways.
class Backend
{
public:
    Backend();
    ~Backend();

    Backend(const Backend &) = delete;
    Backend &operator=(const Backend &) = delete;

    Morvex::Inspector &inspector();

    static bool isRemote();

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace MorvexTest
