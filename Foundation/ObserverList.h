#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "Foundation/Subscription.h"

namespace corvane {

/// The callbacks registered for one kind of event, told in the order they were added. Each
/// stays registered while the Subscription `add` returned lives. While being told, a callback
/// may add or end any subscription, its own included, and may destroy the list: one ended
/// meanwhile is not called, one added meanwhile is first told next time. Subscriptions may
/// outlive the list. Main thread only, like everything that observes.
template <typename... Arguments>
class ObserverList {
public:
    using Callback = std::function<void(Arguments...)>;

    ObserverList() = default;
    ObserverList(const ObserverList&) = delete;
    ObserverList& operator=(const ObserverList&) = delete;

    /// Registers `callback` until the returned subscription ends.
    [[nodiscard]] Subscription add(Callback callback) {
        auto observer = std::make_shared<Observer>(Observer{std::move(callback)});
        observers->push_back(observer);
        return Subscription(
            [weakObservers = std::weak_ptr(observers), weakObserver = std::weak_ptr(observer)] {
                const auto ended = weakObserver.lock();
                const auto live = weakObservers.lock();
                if (!ended || !live) {
                    return;
                }
                ended->active = false;
                std::erase(*live, ended);
            });
    }

    /// Calls every registered callback with `arguments`, oldest first.
    void notify(const Arguments&... arguments) const {
        // A copy, because callbacks may change the list, and holding each observer keeps its
        // callback alive through a call that ends its own subscription. Nothing of this list is
        // touched after the copy, so a callback may also destroy it.
        const std::vector<std::shared_ptr<Observer>> told = *observers;
        for (const auto& observer : told) {
            if (observer->active) {
                observer->callback(arguments...);
            }
        }
    }

    bool empty() const { return observers->empty(); }

private:
    struct Observer {
        Callback callback;
        bool active = true;
    };

    std::shared_ptr<std::vector<std::shared_ptr<Observer>>> observers =
        std::make_shared<std::vector<std::shared_ptr<Observer>>>();
};

}  // namespace corvane
