#pragma once

#include <memory>
#include <mutex>
#include <optional>

#include "CorvaneAgent/BatteryInfo.h"
#include "Platform/BatteryProperties.h"

namespace corvane {

/// The record for a battery's properties (names and units of BatteryPropertySource). Absent
/// when `properties` is not an object or has no numeric "CurrentCapacity"; every other missing,
/// non-numeric or non-finite property takes its field's fallback (0, false, no minutes).
[[nodiscard]] std::optional<BatteryInfo> batteryInfoFrom(const StatisticsDictionary& properties);

/// Reads the machine's battery. The battery is looked up on the first read and kept, and a
/// machine without one is remembered as such. Any thread, also several at once.
class BatteryReader {
public:
    explicit BatteryReader(BatteryLookup lookup);

    /// The battery as it is now; absent without a battery or when it cannot be read.
    [[nodiscard]] std::optional<BatteryInfo> read();

private:
    std::once_flag lookedUp;
    BatteryLookup lookup;
    /// Null once looked up on a machine without a battery.
    std::unique_ptr<BatteryPropertySource> battery;
};

}  // namespace corvane
