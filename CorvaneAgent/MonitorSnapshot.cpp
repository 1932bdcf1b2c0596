#include "CorvaneAgent/MonitorSnapshot.h"

#include "CorvaneAgent/SystemMonitor.h"

namespace corvane {

using Json = nlohmann::ordered_json;

namespace {

template <typename T>
Json optionalJson(const std::optional<T>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json processJson(const ProcessMetric& process) {
    return {{"pid", process.pid},           {"name", process.name},
            {"cpu", process.cpu},           {"memory", process.memory},
            {"diskRead", process.diskRead}, {"diskWrite", process.diskWrite}};
}

Json temperatureJson(const TemperatureReading& reading) {
    return {{"key", reading.key},
            {"category", sensorCategoryRaw(reading.category)},
            {"celsius", reading.celsius}};
}

Json groupJson(const SensorGroup& group) {
    return {{"category", sensorCategoryRaw(group.category)}, {"celsius", group.celsius}};
}

Json fanJson(const FanReading& fan) {
    return {{"key", fan.key},
            {"index", fan.index},
            {"rpm", fan.rpm},
            {"minimumRPM", optionalJson(fan.minimumRPM)},
            {"maximumRPM", optionalJson(fan.maximumRPM)}};
}

Json powerJson(const PowerReading& reading) {
    return {{"channel", powerChannelRaw(reading.channel)}, {"watts", reading.watts}};
}

Json batteryJson(const std::optional<BatteryInfo>& battery) {
    if (!battery) {
        return nullptr;
    }
    return {{"chargePercent", battery->chargePercent},
            {"healthPercent", battery->healthPercent},
            {"cycleCount", battery->cycleCount},
            {"volts", battery->volts},
            {"amps", battery->amps},
            {"isCharging", battery->isCharging},
            {"isPluggedIn", battery->isPluggedIn},
            {"isFullyCharged", battery->isFullyCharged},
            {"minutesRemaining", optionalJson(battery->minutesRemaining)}};
}

template <typename T, typename Convert>
Json listJson(const std::vector<T>& items, Convert convert) {
    Json list = Json::array();
    for (const T& item : items) {
        list.push_back(convert(item));
    }
    return list;
}

Json planJson(const std::optional<SamplingPlan>& plan) {
    if (!plan) {
        return nullptr;
    }
    return {{"samplesProcesses", plan->samplesProcesses},
            {"samplesGPU", plan->samplesGPU},
            {"samplesBattery", plan->samplesBattery},
            {"storageEvery", plan->storageEvery},
            {"smcScope", smcScopeRaw(plan->smcScope)}};
}

}  // namespace

Json monitorSnapshot(const SystemMonitor& monitor) {
    const MonitorFields& f = monitor.fields();
    Json json = Json::object();
    json["cpuUsage"] = f.cpuUsage;
    json["userCPUUsage"] = f.userCPUUsage;
    json["systemCPUUsage"] = f.systemCPUUsage;
    json["usedMemory"] = f.usedMemory;
    json["wiredMemory"] = f.wiredMemory;
    json["compressedMemory"] = f.compressedMemory;
    json["activeMemory"] = f.activeMemory;
    json["cacheMemory"] = f.cacheMemory;
    json["pageInsPerSecond"] = f.pageInsPerSecond;
    json["pageOutsPerSecond"] = f.pageOutsPerSecond;
    json["loadAverages"] = f.loadAverages;
    json["swapUsed"] = f.swapUsed;
    json["swapTotal"] = f.swapTotal;
    json["topCPUProcesses"] = listJson(f.topCPUProcesses, processJson);
    json["topMemoryProcesses"] = listJson(f.topMemoryProcesses, processJson);
    json["topDiskProcesses"] = listJson(f.topDiskProcesses, processJson);
    json["diskReadPerSecond"] = f.diskReadPerSecond;
    json["diskWritePerSecond"] = f.diskWritePerSecond;
    json["chipName"] = f.chipName;
    json["volumeName"] = f.volumeName;
    json["gpuUsage"] = optionalJson(f.gpuUsage);
    json["gpuRendererUsage"] = optionalJson(f.gpuRendererUsage);
    json["gpuTilerUsage"] = optionalJson(f.gpuTilerUsage);
    json["gpuAllocatedMemory"] = optionalJson(f.gpuAllocatedMemory);
    json["gpuInUseMemory"] = optionalJson(f.gpuInUseMemory);
    json["temperatures"] = listJson(f.temperatures, temperatureJson);
    json["sensorGroups"] = listJson(f.sensorGroups, groupJson);
    json["fans"] = listJson(f.fans, fanJson);
    json["power"] = listJson(f.power, powerJson);
    json["battery"] = batteryJson(f.battery);
    json["cpuTemperature"] = optionalJson(f.cpuTemperature);
    json["gpuTemperature"] = optionalJson(f.gpuTemperature);
    json["totalMemory"] = f.totalMemory;
    json["availableStorage"] = f.availableStorage;
    json["totalStorage"] = f.totalStorage;
    json["uptime"] = f.uptime;
    json["performanceCoreCount"] = f.performanceCoreCount;
    json["coreUsages"] = f.coreUsages;
    json["cpuHistory"] = f.cpuHistory;
    json["userCPUHistory"] = f.userCPUHistory;
    json["systemCPUHistory"] = f.systemCPUHistory;
    json["loadOneHistory"] = f.loadOneHistory;
    json["loadFiveHistory"] = f.loadFiveHistory;
    json["loadFifteenHistory"] = f.loadFifteenHistory;
    json["thermalState"] = thermalStateRaw(f.thermalState);
    json["memoryPressureLevel"] = memoryPressureLevelRaw(f.memoryPressureLevel);

    json["memoryUsage"] = monitor.memoryUsage();
    json["memoryPressure"] = monitor.memoryPressure();
    json["storageUsage"] = monitor.storageUsage();
    json["thermalStateLabel"] = monitor.thermalStateLabel();
    json["cpuWatts"] = optionalJson(monitor.cpuWatts());
    json["systemWatts"] = optionalJson(monitor.systemWatts());
    json["hottestCelsius"] = optionalJson(monitor.hottestCelsius());
    json["fastestFanRPM"] = optionalJson(monitor.fastestFanRPM());

    json["plan"] = planJson(monitor.lastRefreshPlan());
    return json;
}

}  // namespace corvane
