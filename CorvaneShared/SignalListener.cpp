#include "CorvaneShared/SignalListener.h"

#include <utility>

namespace corvane {

SignalListener::SignalListener(SignalBus& bus, std::string suite)
    : bus(bus), suite(std::move(suite)) {}

SignalListener::~SignalListener() {
    for (SignalToken token : registrations) {
        bus.cancel(token);
    }
}

void SignalListener::listen(SharedSettings::Signal signal, std::function<void()> handler) {
    if (auto token = bus.subscribe(SharedSettings::signalName(signal, suite), std::move(handler))) {
        registrations.push_back(*token);
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
