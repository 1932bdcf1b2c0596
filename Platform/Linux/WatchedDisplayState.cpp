#include "Platform/Linux/WatchedDisplayState.h"

#include <utility>

namespace corvane {

WatchedDisplayState::WatchedDisplayState(std::unique_ptr<SessionDisplayState> state,
                                         DescriptorWatch watch, MainQueue& queue)
    : state(std::move(state)), watch(std::move(watch)) {
    watchDescriptors();
    // Messages that came in while the state waited for the daemons' answers are already read,
    // so no descriptor will announce them: handled once the loop runs, after the observers had
    // their chance to subscribe.
    queue.post([alive = std::weak_ptr<char>(lifetime), this] {
        if (!alive.expired()) {
            dispatch();
        }
    });
}

Subscription WatchedDisplayState::observe(std::function<void(DisplayEvent)> handler) {
    return state->observe(std::move(handler));
}

void WatchedDisplayState::dispatch() {
    const std::weak_ptr<char> alive = lifetime;
    state->dispatch();
    // A connection that closed is dropped by dispatch; its descriptor would stay readable.
    if (!alive.expired() && state->descriptors() != watched) {
        watchDescriptors();
    }
}

void WatchedDisplayState::watchDescriptors() {
    watched = state->descriptors();
    watches.clear();
    for (const int descriptor : watched) {
        watches.push_back(watch(descriptor, [this] { dispatch(); }));
    }
}

}  // namespace corvane
