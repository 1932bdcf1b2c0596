#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/BatteryInfo.h"

namespace corvane {

/// What a temperature sensor measures, in declaration order (also the order of groups).
enum class SensorCategory { cpu, gpu, memory, storage, battery, ambient, other };

/// The category's raw value: "cpu", "gpu", "memory", "storage", "battery", "ambient", "other".
std::string_view sensorCategoryRaw(SensorCategory category);

/// One temperature, identified by its sensor key.
struct TemperatureReading {
    std::string key;
    SensorCategory category = SensorCategory::other;
    double celsius = 0;

    friend bool operator==(const TemperatureReading&, const TemperatureReading&) = default;
};

/// The hottest reading of one category.
struct SensorGroup {
    SensorCategory category = SensorCategory::other;
    double celsius = 0;

    friend bool operator==(const SensorGroup&, const SensorGroup&) = default;
};

/// One fan's speed in revolutions per minute, with its limits when known.
struct FanReading {
    std::string key;
    /// Position among the machine's fans, from 0.
    int index = 0;
    double rpm = 0;
    std::optional<double> minimumRPM;
    std::optional<double> maximumRPM;

    friend bool operator==(const FanReading&, const FanReading&) = default;
};

/// A power channel, in declaration order.
enum class PowerChannel { system, cpu, gpu };

/// The channel's raw value: "system", "cpu", "gpu".
std::string_view powerChannelRaw(PowerChannel channel);

/// The power drawn through one channel, in watts.
struct PowerReading {
    PowerChannel channel = PowerChannel::system;
    double watts = 0;

    friend bool operator==(const PowerReading&, const PowerReading&) = default;
};

/// The results of one background sensor pass.
struct SensorReadings {
    std::vector<TemperatureReading> temperatures;
    std::vector<FanReading> fans;
    std::vector<PowerReading> power;
    /// Absent when the pass did not read the battery or the machine has none.
    std::optional<BatteryInfo> battery;
};

}  // namespace corvane
