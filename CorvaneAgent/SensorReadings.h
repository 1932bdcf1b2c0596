#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/BatteryInfo.h"
#include "CorvaneShared/TextLookup.h"

namespace corvane {

/// What a temperature sensor measures, in declaration order (also the order of groups).
enum class SensorCategory { cpu, gpu, memory, storage, battery, ambient, other };

/// Every category, in declaration order.
inline constexpr std::array<SensorCategory, 7> allSensorCategories = {
    SensorCategory::cpu,     SensorCategory::gpu,     SensorCategory::memory,
    SensorCategory::storage, SensorCategory::battery, SensorCategory::ambient,
    SensorCategory::other};

/// The category's raw value, also its identifier: "cpu", "gpu", "memory", "storage", "battery",
/// "ambient", "other".
std::string_view sensorCategoryRaw(SensorCategory category);
/// The category's title ("CPU", "GPU", "Memory", "Storage", "Battery", "Ambient", "Other"),
/// translated through `translate`.
std::string title(SensorCategory category, const TextLookup& translate);
/// The symbol name of the category's icon: "cpu", "cube.transparent", "memorychip",
/// "internaldrive", "battery.100", "wind", "thermometer.medium".
std::string_view icon(SensorCategory category);

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

    /// The category's title, translated through `translate`.
    std::string title(const TextLookup& translate) const {
        return corvane::title(category, translate);
    }
    /// The category's symbol name.
    std::string_view icon() const { return corvane::icon(category); }

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

    /// Where the speed stands between the limits, from 0 at the minimum to 1 at the maximum,
    /// held within them (a stopped fan is at 0). Absent without both limits or when the maximum
    /// is not above the minimum. For display only.
    std::optional<double> load() const;

    friend bool operator==(const FanReading&, const FanReading&) = default;
};

/// A power channel, in declaration order.
enum class PowerChannel { system, cpu, gpu };

/// Every channel, in declaration order.
inline constexpr std::array<PowerChannel, 3> allPowerChannels = {
    PowerChannel::system, PowerChannel::cpu, PowerChannel::gpu};

/// The channel's raw value, also its identifier: "system", "cpu", "gpu".
std::string_view powerChannelRaw(PowerChannel channel);
/// The controller key the channel is read from: "PSTR", "PPMC", "P3F2".
std::string_view key(PowerChannel channel);
/// The channel's title ("System", "CPU", "GPU"), translated through `translate`.
std::string title(PowerChannel channel, const TextLookup& translate);
/// The symbol name of the channel's icon: "bolt", "cpu", "cube.transparent".
std::string_view icon(PowerChannel channel);

/// The power drawn through one channel, in watts.
struct PowerReading {
    PowerChannel channel = PowerChannel::system;
    double watts = 0;

    /// The channel's identifier.
    std::string_view id() const { return powerChannelRaw(channel); }
    /// The channel's title, translated through `translate`.
    std::string title(const TextLookup& translate) const {
        return corvane::title(channel, translate);
    }
    /// The channel's symbol name.
    std::string_view icon() const { return corvane::icon(channel); }

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
