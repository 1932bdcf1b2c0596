#include "CorvaneShared/SettingsChanges.h"

#include <utility>

namespace corvane {

SettingsChanges::SettingsChanges(const SettingsStore& store)
    : store(store), lastSeen(store.storedValues()) {}

void SettingsChanges::check() {
    SettingValue now = store.storedValues();
    if (now == lastSeen) {
        return;
    }
    lastSeen = std::move(now);
    observers.notify();
}

}  // namespace corvane
