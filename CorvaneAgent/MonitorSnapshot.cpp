#include "CorvaneAgent/MonitorSnapshot.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CorvaneAgent/SystemMonitor.h"

namespace corvane {

using JSON = nlohmann::ordered_json;

namespace {

// An object from its members, given in order and each key once. Built member by member: from a
// braced list nlohmann/json first makes a two-element array of every member and then converts,
// and its operator[] looks each key up among the members already there, which makes a large
// object quadratic in its size.
class ObjectBuilder {
public:
    ObjectBuilder() : json(JSON::object()) {}
    template <typename Value>
    ObjectBuilder& add(std::string_view key, Value&& value) {
        json.get_ref<JSON::object_t&>().emplace_back(std::string(key),
                                                     JSON(std::forward<Value>(value)));
        return *this;
    }
    JSON take() { return std::move(json); }

private:
    JSON json;
};

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
    return ObjectBuilder()
        .add("pid", process.pid)
        .add("name", process.name)
        .add("cpu", process.cpu)
        .add("memory", process.memory)
        .add("diskRead", process.diskRead)
        .add("diskWrite", process.diskWrite)
        .take();
}

JSON valueJSON(const TemperatureReading& reading) {
    return ObjectBuilder()
        .add("key", reading.key)
        .add("category", sensorCategoryRaw(reading.category))
        .add("celsius", reading.celsius)
        .take();
}

JSON valueJSON(const SensorGroup& group) {
    return ObjectBuilder()
        .add("category", sensorCategoryRaw(group.category))
        .add("celsius", group.celsius)
        .take();
}

JSON valueJSON(const FanReading& fan) {
    return ObjectBuilder()
        .add("key", fan.key)
        .add("index", fan.index)
        .add("rpm", fan.rpm)
        .add("minimumRPM", valueJSON(fan.minimumRPM))
        .add("maximumRPM", valueJSON(fan.maximumRPM))
        .take();
}

JSON valueJSON(const PowerReading& reading) {
    return ObjectBuilder()
        .add("channel", powerChannelRaw(reading.channel))
        .add("watts", reading.watts)
        .take();
}

JSON valueJSON(const BatteryInfo& battery) {
    return ObjectBuilder()
        .add("chargePercent", battery.chargePercent)
        .add("healthPercent", battery.healthPercent)
        .add("cycleCount", battery.cycleCount)
        .add("volts", battery.volts)
        .add("amps", battery.amps)
        .add("isCharging", battery.isCharging)
        .add("isPluggedIn", battery.isPluggedIn)
        .add("isFullyCharged", battery.isFullyCharged)
        .add("minutesRemaining", valueJSON(battery.minutesRemaining))
        .take();
}

JSON valueJSON(const SamplingPlan& plan) {
    return ObjectBuilder()
        .add("samplesProcesses", plan.samplesProcesses)
        .add("samplesGPU", plan.samplesGPU)
        .add("samplesBattery", plan.samplesBattery)
        .add("storageEvery", plan.storageEvery)
        .add("smcScope", smcScopeRaw(plan.smcScope))
        .take();
}

JSON valueJSON(ThermalState state) {
    return thermalStateRaw(state);
}

JSON valueJSON(MemoryPressureLevel level) {
    return memoryPressureLevelRaw(level);
}

}  // namespace

JSON monitorSnapshot(const SystemMonitor& monitor) {
    ObjectBuilder json;
    forEachPublishedField(monitor.fields(), [&json](std::string_view name, const auto& value) {
        json.add(name, valueJSON(value));
    });

    json.add("memoryUsage", monitor.memoryUsage())
        .add("memoryPressure", monitor.memoryPressure())
        .add("storageUsage", monitor.storageUsage())
        .add("thermalStateLabel", monitor.thermalStateLabel())
        .add("cpuWatts", valueJSON(monitor.cpuWatts()))
        .add("systemWatts", valueJSON(monitor.systemWatts()))
        .add("hottestCelsius", valueJSON(monitor.hottestCelsius()))
        .add("fastestFanRPM", valueJSON(monitor.fastestFanRPM()));

    json.add("plan", valueJSON(monitor.lastRefreshPlan()));
    return json.take();
}

}  // namespace corvane
