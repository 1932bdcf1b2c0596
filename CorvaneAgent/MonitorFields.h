#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/BatteryInfo.h"
#include "CorvaneAgent/MemoryUsage.h"
#include "CorvaneAgent/ProcessMetric.h"
#include "CorvaneAgent/SensorReadings.h"
#include "Platform/SystemStatistics.h"

namespace corvane {

inline constexpr std::size_t cpuHistoryLength = 36;
inline constexpr std::size_t loadHistoryLength = 60;

/// Every published field of the monitor, in declaration order, with its initial value.
/// Usage values are fractions 0...1; memory, swap and disk figures bytes; rates bytes per second.
struct MonitorFields {
    double cpuUsage = 0;
    double userCPUUsage = 0;
    double systemCPUUsage = 0;
    /// Wired + compressed + active, at most `totalMemory`.
    std::uint64_t usedMemory = 0;
    std::uint64_t wiredMemory = 0;
    std::uint64_t compressedMemory = 0;
    std::uint64_t activeMemory = 0;
    std::uint64_t cacheMemory = 0;
    std::uint64_t pageInsPerSecond = 0;
    std::uint64_t pageOutsPerSecond = 0;
    /// 1, 5 and 15 minute load averages; always exactly three.
    std::array<double, 3> loadAverages{};
    std::uint64_t swapUsed = 0;
    std::uint64_t swapTotal = 0;
    std::vector<ProcessMetric> topCPUProcesses;
    std::vector<ProcessMetric> topMemoryProcesses;
    std::vector<ProcessMetric> topDiskProcesses;
    std::uint64_t diskReadPerSecond = 0;
    std::uint64_t diskWritePerSecond = 0;
    std::string chipName;
    std::string volumeName;
    std::optional<double> gpuUsage;
    std::optional<double> gpuRendererUsage;
    std::optional<double> gpuTilerUsage;
    std::optional<std::uint64_t> gpuAllocatedMemory;
    std::optional<std::uint64_t> gpuInUseMemory;
    std::vector<TemperatureReading> temperatures;
    std::vector<SensorGroup> sensorGroups;
    std::vector<FanReading> fans;
    std::vector<PowerReading> power;
    std::optional<BatteryInfo> battery;
    /// Degrees Celsius.
    std::optional<double> cpuTemperature;
    /// Degrees Celsius.
    std::optional<double> gpuTemperature;
    std::uint64_t totalMemory = 0;
    std::int64_t availableStorage = 0;
    std::int64_t totalStorage = 0;
    /// Seconds since boot.
    double uptime = 0;
    int performanceCoreCount = 0;
    /// One busy fraction per logical CPU, in the kernel's CPU order.
    std::vector<double> coreUsages;
    /// Oldest sample first; the lengths never change.
    std::vector<double> cpuHistory = std::vector<double>(cpuHistoryLength, 0.0);
    std::vector<double> userCPUHistory = std::vector<double>(cpuHistoryLength, 0.0);
    std::vector<double> systemCPUHistory = std::vector<double>(cpuHistoryLength, 0.0);
    std::vector<double> loadOneHistory = std::vector<double>(loadHistoryLength, 0.0);
    std::vector<double> loadFiveHistory = std::vector<double>(loadHistoryLength, 0.0);
    std::vector<double> loadFifteenHistory = std::vector<double>(loadHistoryLength, 0.0);
    ThermalState thermalState = ThermalState::unknown;
    MemoryPressureLevel memoryPressureLevel = MemoryPressureLevel::normal;
};

/// Names what an observer can watch: each published field, in declaration order, then the set
/// of open panels.
enum class MonitorField : std::size_t {
    cpuUsage,
    userCPUUsage,
    systemCPUUsage,
    usedMemory,
    wiredMemory,
    compressedMemory,
    activeMemory,
    cacheMemory,
    pageInsPerSecond,
    pageOutsPerSecond,
    loadAverages,
    swapUsed,
    swapTotal,
    topCPUProcesses,
    topMemoryProcesses,
    topDiskProcesses,
    diskReadPerSecond,
    diskWritePerSecond,
    chipName,
    volumeName,
    gpuUsage,
    gpuRendererUsage,
    gpuTilerUsage,
    gpuAllocatedMemory,
    gpuInUseMemory,
    temperatures,
    sensorGroups,
    fans,
    power,
    battery,
    cpuTemperature,
    gpuTemperature,
    totalMemory,
    availableStorage,
    totalStorage,
    uptime,
    performanceCoreCount,
    coreUsages,
    cpuHistory,
    userCPUHistory,
    systemCPUHistory,
    loadOneHistory,
    loadFiveHistory,
    loadFifteenHistory,
    thermalState,
    memoryPressureLevel,
    openPopovers,
};

inline constexpr std::size_t publishedFieldCount =
    static_cast<std::size_t>(MonitorField::memoryPressureLevel) + 1;
inline constexpr std::size_t monitorFieldCount =
    static_cast<std::size_t>(MonitorField::openPopovers) + 1;

/// The field's name as the model and the snapshot spell it ("cpuUsage", ...).
std::string_view monitorFieldName(MonitorField field);

/// "nominal", "fair", "serious", "critical", or "unknown" for any other value.
std::string_view thermalStateRaw(ThermalState state);
/// The English label: "Nominal", "Elevated", "High", "Critical", or "Unknown" for any other value.
std::string_view thermalStateLabelKey(ThermalState state);

/// Values derived from the fields on every read, never stored.
/// `usedMemory / totalMemory` capped at 1; 0 when the total is 0.
double memoryUsage(const MonitorFields& fields);
/// `(wiredMemory + compressedMemory) / totalMemory` capped at 1; 0 when the total is 0.
double memoryPressure(const MonitorFields& fields);
/// `1 - availableStorage / totalStorage`, unclamped; 0 when the total is below 1.
double storageUsage(const MonitorFields& fields);
/// The watts of the first CPU power reading; absent when there is none.
std::optional<double> cpuWatts(const MonitorFields& fields);
/// The watts of the first whole-system power reading; absent when there is none.
std::optional<double> systemWatts(const MonitorFields& fields);
/// The hottest sensor group in degrees Celsius; absent without groups.
std::optional<double> hottestCelsius(const MonitorFields& fields);
/// The fastest fan in revolutions per minute; absent without fans.
std::optional<double> fastestFanRPM(const MonitorFields& fields);

}  // namespace corvane
