#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "Platform/StatisticsDictionary.h"

namespace corvane {

/// The battery that powers the machine, as a dictionary of its properties under these names and
/// units: "CurrentCapacity" (percent charged), "MaxCapacity" (percent of the design capacity
/// left), "CycleCount", "Voltage" (millivolts), "Amperage" (milliamperes, negative while
/// discharging), "IsCharging", "ExternalConnected", "FullyCharged" (booleans) and
/// "TimeRemaining" (minutes to empty or to full). A property that cannot be read is left out.
class BatteryPropertySource {
public:
    virtual ~BatteryPropertySource() = default;
    /// The properties as they are now; absent when the battery cannot be read at all. Any
    /// thread; calls may overlap.
    [[nodiscard]] virtual std::optional<StatisticsDictionary> properties() const = 0;
};

/// Looks for the machine's battery; null on a machine without one. Called once per reader.
using BatteryLookup = std::function<std::unique_ptr<BatteryPropertySource>()>;

}  // namespace corvane
