#pragma once

#include <array>
#include <bitset>
#include <functional>

#include "CorvaneAgent/MonitorFields.h"
#include "Foundation/ObserverList.h"

namespace corvane {

/// The observers of the monitor's fields, one list per field. Changes are collected while a
/// sampling step runs and announced together when it ends, so an observer never sees a step
/// half done. Main thread only.
class FieldObservers {
public:
    /// Calls `onChange` after every step that changed `field`, until the subscription ends.
    Subscription observe(MonitorField field, std::function<void()> onChange);

    /// Records that `field` changed in the current step.
    void markChanged(MonitorField field) { pending.set(static_cast<std::size_t>(field)); }
    /// Ends the current step: notifies the observers of every changed field, in field order.
    void announceChanges();

private:
    std::array<ObserverList<>, monitorFieldCount> lists;
    std::bitset<monitorFieldCount> pending;
};

}  // namespace corvane
