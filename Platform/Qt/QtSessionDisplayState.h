#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Platform/DisplayState.h"
#include "Platform/Linux/SessionDisplayState.h"

class QObject;
class QSocketNotifier;

namespace corvane {

/// A SessionDisplayState driven by the Qt event loop: its bus connections are watched with
/// socket notifiers and dispatched when they have input. Create, observe and destroy on the
/// main thread inside a QCoreApplication's lifetime.
class QtSessionDisplayState final : public DisplayStateSource {
public:
    explicit QtSessionDisplayState(
        std::unique_ptr<SessionDisplayState> state = std::make_unique<SessionDisplayState>());
    ~QtSessionDisplayState() override;

    QtSessionDisplayState(const QtSessionDisplayState&) = delete;
    QtSessionDisplayState& operator=(const QtSessionDisplayState&) = delete;

    /// Events arrive on the main thread until the subscription ends (it may outlive this).
    Subscription observe(std::function<void(DisplayEvent)> handler) override;

private:
    void dispatch();
    void watchDescriptors();

    std::unique_ptr<SessionDisplayState> state;
    /// Parent of the notifiers; gone with this, which tells a dispatch that an observer
    /// destroyed it.
    std::unique_ptr<QObject> context;
    std::vector<QSocketNotifier*> notifiers;
};

}  // namespace corvane
