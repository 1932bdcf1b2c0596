#pragma once

#include <functional>

#include "CorvaneShared/SettingsStore.h"
#include "Foundation/ObserverList.h"

namespace corvane {

/// The defaults-change notification: tells its observers when the stored content of a settings
/// store is no longer what it was at the last check, so that a rewrite that changes nothing
/// (the same values written again, or only their layout in the file) tells nobody. A corrupt,
/// missing or unreadable file counts as empty, as the store reads it. Main thread only.
class SettingsChanges {
public:
    /// Remembers what `store` (which outlives this) holds now.
    explicit SettingsChanges(const SettingsStore& store);

    SettingsChanges(const SettingsChanges&) = delete;
    SettingsChanges& operator=(const SettingsChanges&) = delete;

    /// Reads the store again and tells every observer once when its content changed. Call it
    /// whenever the file may have changed.
    void check();

    /// Runs `onChange` after each check that found a change, until the subscription ends.
    [[nodiscard]] Subscription observe(std::function<void()> onChange) {
        return observers.add(std::move(onChange));
    }

private:
    const SettingsStore& store;
    SettingValue lastSeen;
    ObserverList<> observers;
};

}  // namespace corvane
