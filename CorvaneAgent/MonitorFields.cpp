#include "CorvaneAgent/MonitorFields.h"

#include <algorithm>
#include <array>

#include "Foundation/EnumNames.h"

namespace corvane {

namespace {

// Unknown first: a value outside the cases reads as unknown.
constexpr std::array<EnumName<ThermalState>, 5> thermalStateNames{{
    {ThermalState::unknown, "unknown", "Unknown"},
    {ThermalState::nominal, "nominal", "Nominal"},
    {ThermalState::fair, "fair", "Elevated"},
    {ThermalState::serious, "serious", "High"},
    {ThermalState::critical, "critical", "Critical"},
}};

std::optional<double> wattsOf(const MonitorFields& fields, PowerChannel channel) {
    auto found = std::find_if(fields.power.begin(), fields.power.end(),
                              [channel](const PowerReading& r) { return r.channel == channel; });
    return found == fields.power.end() ? std::nullopt : std::optional(found->watts);
}

double cappedShare(std::uint64_t part, std::uint64_t total) {
    if (total == 0) {
        return 0.0;
    }
    return std::min(static_cast<double>(part) / static_cast<double>(total), 1.0);
}

}  // namespace

std::string_view thermalStateRaw(ThermalState state) {
    return enumName(thermalStateNames, state).raw;
}

std::string_view thermalStateLabelKey(ThermalState state) {
    return enumName(thermalStateNames, state).title;
}

double memoryUsage(const MonitorFields& fields) {
    return cappedShare(fields.usedMemory, fields.totalMemory);
}

double memoryPressure(const MonitorFields& fields) {
    return cappedShare(saturatingAdd(fields.wiredMemory, fields.compressedMemory),
                       fields.totalMemory);
}

double storageUsage(const MonitorFields& fields) {
    if (fields.totalStorage < 1) {
        return 0.0;
    }
    return 1.0 -
           static_cast<double>(fields.availableStorage) / static_cast<double>(fields.totalStorage);
}

std::optional<double> cpuWatts(const MonitorFields& fields) {
    return wattsOf(fields, PowerChannel::cpu);
}

std::optional<double> systemWatts(const MonitorFields& fields) {
    return wattsOf(fields, PowerChannel::system);
}

std::optional<double> hottestCelsius(const MonitorFields& fields) {
    if (fields.sensorGroups.empty()) {
        return std::nullopt;
    }
    return std::max_element(
               fields.sensorGroups.begin(), fields.sensorGroups.end(),
               [](const SensorGroup& a, const SensorGroup& b) { return a.celsius < b.celsius; })
        ->celsius;
}

std::optional<double> fastestFanRPM(const MonitorFields& fields) {
    if (fields.fans.empty()) {
        return std::nullopt;
    }
    return std::max_element(fields.fans.begin(), fields.fans.end(),
                            [](const FanReading& a, const FanReading& b) { return a.rpm < b.rpm; })
        ->rpm;
}

}  // namespace corvane
