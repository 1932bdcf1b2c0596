#pragma once

#include <functional>
#include <string_view>

#include "Foundation/Subscription.h"

namespace corvane {

/// A transport for payload-free signals between the processes of one user session, addressed
/// by name. Posts may be dropped (no transport) and deliveries carry nothing but the name.
/// Main thread only.
class SignalBus {
public:
    virtual ~SignalBus() = default;

    /// Sends `name` to every subscriber of it, in this process and others; dropped silently
    /// when there is no transport.
    virtual void post(std::string_view name) = 0;
    /// Runs `handler` on the main thread once for each post of `name` that arrives, until the
    /// subscription ends; once it has, the handler never runs again, not even for a post already
    /// received. An inactive subscription when the transport refuses, and the handler then
    /// never runs. The subscription may outlive the bus.
    [[nodiscard]] virtual Subscription subscribe(std::string_view name,
                                                 std::function<void()> handler) = 0;
};

}  // namespace corvane
