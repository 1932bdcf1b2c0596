#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Foundation/Subscription.h"
#include "Platform/DisplayState.h"
#include "Platform/Linux/SessionDisplayState.h"
#include "Platform/Runtime.h"

namespace corvane {

/// Calls `onReadable` from an event loop whenever `fd` has input (or hung up), until the
/// subscription ends; ending it from inside `onReadable` is allowed.
using DescriptorWatch = std::function<Subscription(int fd, std::function<void()> onReadable)>;

/// A SessionDisplayState driven by an event loop, whichever it is: its bus connections are
/// watched through `watch` and dispatched when they have input, once more when the loop first
/// runs (for what came in while the state waited for the daemons), and watched afresh when a
/// bus goes away. Create, observe and destroy on the loop's thread.
class WatchedDisplayState final : public DisplayStateSource {
public:
    WatchedDisplayState(std::unique_ptr<SessionDisplayState> state, DescriptorWatch watch,
                        MainQueue& queue);

    WatchedDisplayState(const WatchedDisplayState&) = delete;
    WatchedDisplayState& operator=(const WatchedDisplayState&) = delete;

    /// Events arrive from the loop until the subscription ends (it may outlive this).
    Subscription observe(std::function<void(DisplayEvent)> handler) override;

private:
    void dispatch();
    void watchDescriptors();

    std::unique_ptr<SessionDisplayState> state;
    DescriptorWatch watch;
    std::vector<int> watched;
    std::vector<Subscription> watches;
    /// Expires with this object, which an observer may destroy while being told.
    std::shared_ptr<char> lifetime = std::make_shared<char>();
};

}  // namespace corvane
