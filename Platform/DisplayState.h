#pragma once

#include <functional>

#include "Foundation/Subscription.h"

namespace corvane {

/// What happened to the screens or the user session.
enum class DisplayEvent {
    screensDidSleep,
    sessionDidResignActive,
    screensDidWake,
    sessionDidBecomeActive,
};

/// Reports screen sleep and wake and session switches. Events arrive on the main thread.
class DisplayStateSource {
public:
    virtual ~DisplayStateSource() = default;
    virtual Subscription observe(std::function<void(DisplayEvent)> handler) = 0;
};

/// A machine whose displays never sleep as far as the agent can tell (no session bus, headless
/// runs): sampling is never paused.
class NeverPausingDisplayState final : public DisplayStateSource {
public:
    Subscription observe(std::function<void(DisplayEvent)>) override { return {}; }
};

}  // namespace corvane
