#pragma once

#include <functional>
#include <utility>

namespace corvane {

/// Keeps a registration (an observer, a listener) alive; destroying or resetting it cancels the
/// registration. Move-only. Main thread only, like the registrations it guards.
class [[nodiscard]] Subscription {
public:
    Subscription() = default;
    explicit Subscription(std::function<void()> cancel) : cancel(std::move(cancel)) {}
    Subscription(Subscription&& other) noexcept : cancel(std::exchange(other.cancel, nullptr)) {}
    Subscription& operator=(Subscription&& other) noexcept {
        if (this != &other) {
            reset();
            cancel = std::exchange(other.cancel, nullptr);
        }
        return *this;
    }
    Subscription(const Subscription&) = delete;
    Subscription& operator=(const Subscription&) = delete;
    ~Subscription() { reset(); }

    /// Cancels the registration now; later calls do nothing.
    void reset() {
        if (auto pending = std::exchange(cancel, nullptr)) {
            pending();
        }
    }

    bool isActive() const { return static_cast<bool>(cancel); }

private:
    std::function<void()> cancel;
};

}  // namespace corvane
