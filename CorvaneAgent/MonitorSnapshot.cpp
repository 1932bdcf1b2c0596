#include "CorvaneAgent/MonitorSnapshot.h"

#include <optional>
#include <string>
#include <vector>

#include "CorvaneAgent/SystemMonitor.h"

namespace corvane {

using JSON = nlohmann::ordered_json;

namespace {

// One overload per kind of value a field holds; numbers, strings and fixed arrays convert as
// they are. Declared before the templates so that those find them for every element type.
template <typename Value>
JSON valueJSON(const Value& value) {
    return JSON(value);
}
JSON valueJSON(const ProcessMetric& process);
JSON valueJSON(const TemperatureReading& reading);
JSON valueJSON(const SensorGroup& group);
JSON valueJSON(const FanReading& fan);
JSON valueJSON(const PowerReading& reading);
JSON valueJSON(const BatteryInfo& battery);
JSON valueJSON(const SamplingPlan& plan);
JSON valueJSON(ThermalState state);
JSON valueJSON(MemoryPressureLevel level);

/// Absent values as null.
template <typename Value>
JSON valueJSON(const std::optional<Value>& value) {
    return value ? valueJSON(*value) : JSON(nullptr);
}

template <typename Item>
JSON valueJSON(const std::vector<Item>& items) {
    JSON list = JSON::array();
    for (const Item& item : items) {
        list.push_back(valueJSON(item));
    }
    return list;
}

JSON valueJSON(const ProcessMetric& process) {
    return {{"pid", process.pid},           {"name", process.name},
            {"cpu", process.cpu},           {"memory", process.memory},
            {"diskRead", process.diskRead}, {"diskWrite", process.diskWrite}};
}

JSON valueJSON(const TemperatureReading& reading) {
    return {{"key", reading.key},
            {"category", sensorCategoryRaw(reading.category)},
            {"celsius", reading.celsius}};
}

JSON valueJSON(const SensorGroup& group) {
    return {{"category", sensorCategoryRaw(group.category)}, {"celsius", group.celsius}};
}

JSON valueJSON(const FanReading& fan) {
    return {{"key", fan.key},
            {"index", fan.index},
            {"rpm", fan.rpm},
            {"minimumRPM", valueJSON(fan.minimumRPM)},
            {"maximumRPM", valueJSON(fan.maximumRPM)}};
}

JSON valueJSON(const PowerReading& reading) {
    return {{"channel", powerChannelRaw(reading.channel)}, {"watts", reading.watts}};
}

JSON valueJSON(const BatteryInfo& battery) {
    return {{"chargePercent", battery.chargePercent},
            {"healthPercent", battery.healthPercent},
            {"cycleCount", battery.cycleCount},
            {"volts", battery.volts},
            {"amps", battery.amps},
            {"isCharging", battery.isCharging},
            {"isPluggedIn", battery.isPluggedIn},
            {"isFullyCharged", battery.isFullyCharged},
            {"minutesRemaining", valueJSON(battery.minutesRemaining)}};
}

JSON valueJSON(const SamplingPlan& plan) {
    return {{"samplesProcesses", plan.samplesProcesses},
            {"samplesGPU", plan.samplesGPU},
            {"samplesBattery", plan.samplesBattery},
            {"storageEvery", plan.storageEvery},
            {"smcScope", smcScopeRaw(plan.smcScope)}};
}

JSON valueJSON(ThermalState state) {
    return thermalStateRaw(state);
}

JSON valueJSON(MemoryPressureLevel level) {
    return memoryPressureLevelRaw(level);
}

}  // namespace

JSON monitorSnapshot(const SystemMonitor& monitor) {
    JSON json = JSON::object();
    forEachPublishedField(monitor.fields(), [&json](std::string_view name, const auto& value) {
        json[std::string(name)] = valueJSON(value);
    });

    json["memoryUsage"] = monitor.memoryUsage();
    json["memoryPressure"] = monitor.memoryPressure();
    json["storageUsage"] = monitor.storageUsage();
    json["thermalStateLabel"] = monitor.thermalStateLabel();
    json["cpuWatts"] = valueJSON(monitor.cpuWatts());
    json["systemWatts"] = valueJSON(monitor.systemWatts());
    json["hottestCelsius"] = valueJSON(monitor.hottestCelsius());
    json["fastestFanRPM"] = valueJSON(monitor.fastestFanRPM());

    json["plan"] = valueJSON(monitor.lastRefreshPlan());
    return json;
}

}  // namespace corvane
