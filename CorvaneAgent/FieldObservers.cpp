#include "CorvaneAgent/FieldObservers.h"

#include <algorithm>
#include <utility>

namespace corvane {

FieldObservers::FieldObservers()
    : lists(std::make_shared<std::array<ObserverList, monitorFieldCount>>()) {}

Subscription FieldObservers::observe(MonitorField field, std::function<void()> onChange) {
    auto observer = std::make_shared<Observer>(Observer{std::move(onChange)});
    ObserverList& list = (*lists)[static_cast<std::size_t>(field)];
    list.push_back(observer);
    // The token may outlive the monitor, so it reaches the lists weakly.
    std::weak_ptr<std::array<ObserverList, monitorFieldCount>> weakLists = lists;
    return Subscription([weakLists, field, weakObserver = std::weak_ptr(observer)] {
        auto cancelled = weakObserver.lock();
        auto liveLists = weakLists.lock();
        if (!cancelled || !liveLists) {
            return;
        }
        cancelled->active = false;
        std::erase((*liveLists)[static_cast<std::size_t>(field)], cancelled);
    });
}

void FieldObservers::announceChanges() {
    const auto changed = std::exchange(pending, {});
    if (changed.none()) {
        return;
    }
    for (std::size_t field = 0; field < monitorFieldCount; ++field) {
        if (!changed.test(field)) {
            continue;
        }
        // Observers may subscribe or unsubscribe while being told, so walk a copy and skip
        // those cancelled in the meantime.
        const ObserverList observers = (*lists)[field];
        for (const auto& observer : observers) {
            if (observer->active) {
                observer->onChange();
            }
        }
    }
}

}  // namespace corvane
