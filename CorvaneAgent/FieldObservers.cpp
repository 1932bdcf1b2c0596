#include "CorvaneAgent/FieldObservers.h"

#include <utility>

namespace corvane {

Subscription FieldObservers::observe(MonitorField field, std::function<void()> onChange) {
    return lists[static_cast<std::size_t>(field)].add(std::move(onChange));
}

void FieldObservers::announceChanges() {
    const auto changed = std::exchange(pending, {});
    if (changed.none()) {
        return;
    }
    for (std::size_t field = 0; field < monitorFieldCount; ++field) {
        if (changed.test(field)) {
            lists[field].notify();
        }
    }
}

}  // namespace corvane
