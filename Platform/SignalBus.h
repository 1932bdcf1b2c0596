#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

namespace corvane {

/// Identifies one subscription on a SignalBus; unique among that bus's live subscriptions.
using SignalToken = std::uint32_t;

/// A transport for payload-free signals between the processes of one user session, addressed
/// by name. Posts may be dropped (no transport) and deliveries carry nothing but the name.
/// Main thread only.
class SignalBus {
public:
    virtual ~SignalBus() = default;

    /// Sends `name` to every subscriber of it, in this process and others; dropped silently
    /// when there is no transport.
    virtual void post(std::string_view name) = 0;
    /// Runs `handler` on the main thread once for each post of `name` that arrives; absent when
    /// the transport refuses the subscription, and the handler then never runs.
    virtual std::optional<SignalToken> subscribe(std::string_view name,
                                                 std::function<void()> handler) = 0;
    /// Ends a subscription: its handler never runs again, not even for a post already received.
    /// A token that is not live is ignored.
    virtual void cancel(SignalToken token) = 0;
};

}  // namespace corvane
