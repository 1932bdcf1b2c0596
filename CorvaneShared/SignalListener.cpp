#include "CorvaneShared/SignalListener.h"

#include <utility>

namespace corvane {

SignalListener::SignalListener(SignalBus& bus, std::string suite)
    : bus(bus), suite(std::move(suite)) {}

SignalListener::~SignalListener() {
    for (Subscription& registration : registrations) {
        registration.reset();
    }
}

void SignalListener::listen(SharedSettings::Signal signal, std::function<void()> handler) {
    Subscription registration =
        bus.subscribe(SharedSettings::signalName(signal, suite), std::move(handler));
    if (registration.isActive()) {
        registrations.push_back(std::move(registration));
    }
}

namespace SharedSettings {

void post(SignalBus& bus, Signal signal, std::string_view suite) {
    bus.post(signalName(signal, suite));
}

void post(SignalBus& bus, Signal signal) {
    post(bus, signal, suiteName());
}

}  // namespace SharedSettings

}  // namespace corvane
