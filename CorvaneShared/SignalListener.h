#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneShared/SharedSettings.h"
#include "Platform/SignalBus.h"

namespace corvane {

/// Registers handlers for the shared signals of one suite and owns the registrations:
/// destroying it ends every one, in the order they were made, so no handler runs afterwards.
/// Main thread only.
class SignalListener {
public:
    /// Listens on `bus` (which outlives the listener) for the signals of `suite`.
    explicit SignalListener(SignalBus& bus, std::string suite = SharedSettings::suiteName());
    ~SignalListener();

    SignalListener(const SignalListener&) = delete;
    SignalListener& operator=(const SignalListener&) = delete;

    /// Runs `handler` on the main thread once for each delivered post of `signal`. Each call is
    /// an independent registration; when the bus refuses it, nothing is stored or reported and
    /// the handler never runs. Posts in quick succession may arrive as one delivery on some
    /// transports, so handlers re-read state rather than count.
    void listen(SharedSettings::Signal signal, std::function<void()> handler);

    /// How many registrations the bus accepted.
    std::size_t registrationCount() const { return registrations.size(); }

private:
    SignalBus& bus;
    std::string suite;
    std::vector<Subscription> registrations;
};

namespace SharedSettings {

/// Posts `signal` of `suite` on `bus`. Carries no data; a post the bus drops is not reported.
void post(SignalBus& bus, Signal signal, std::string_view suite);
/// Posts `signal` in this process's suite.
void post(SignalBus& bus, Signal signal);

}  // namespace SharedSettings

}  // namespace corvane
