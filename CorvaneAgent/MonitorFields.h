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

/// The 1, 5 and 15 minute load averages; always exactly three.
using LoadAverages = std::array<double, 3>;
/// Samples of one reading, oldest first; the length never changes.
using History = std::vector<double>;

// The published fields of the monitor, one row each in declaration order: FIELD(type, name,
// initial value). This is the only list of them: it declares the members of MonitorFields, the
// cases of MonitorField, and through forEachPublishedField the snapshot's keys, so a new field
// is one new row. Units: usage values are fractions 0...1; memory, swap and disk figures bytes;
// rates bytes per second; temperatures degrees Celsius; uptime seconds since boot.
// `usedMemory` is wired + compressed + active, at most `totalMemory`; `coreUsages` holds one
// busy fraction per logical CPU, in the kernel's CPU order.
#define CORVANE_MONITOR_FIELDS(FIELD)                                   \
    FIELD(double, cpuUsage, 0)                                          \
    FIELD(double, userCPUUsage, 0)                                      \
    FIELD(double, systemCPUUsage, 0)                                    \
    FIELD(std::uint64_t, usedMemory, 0)                                 \
    FIELD(std::uint64_t, wiredMemory, 0)                                \
    FIELD(std::uint64_t, compressedMemory, 0)                           \
    FIELD(std::uint64_t, activeMemory, 0)                               \
    FIELD(std::uint64_t, cacheMemory, 0)                                \
    FIELD(std::uint64_t, pageInsPerSecond, 0)                           \
    FIELD(std::uint64_t, pageOutsPerSecond, 0)                          \
    FIELD(LoadAverages, loadAverages, {})                               \
    FIELD(std::uint64_t, swapUsed, 0)                                   \
    FIELD(std::uint64_t, swapTotal, 0)                                  \
    FIELD(std::vector<ProcessMetric>, topCPUProcesses, {})              \
    FIELD(std::vector<ProcessMetric>, topMemoryProcesses, {})           \
    FIELD(std::vector<ProcessMetric>, topDiskProcesses, {})             \
    FIELD(std::uint64_t, diskReadPerSecond, 0)                          \
    FIELD(std::uint64_t, diskWritePerSecond, 0)                         \
    FIELD(std::string, chipName, {})                                    \
    FIELD(std::string, volumeName, {})                                  \
    FIELD(std::optional<double>, gpuUsage, {})                          \
    FIELD(std::optional<double>, gpuRendererUsage, {})                  \
    FIELD(std::optional<double>, gpuTilerUsage, {})                     \
    FIELD(std::optional<std::uint64_t>, gpuAllocatedMemory, {})         \
    FIELD(std::optional<std::uint64_t>, gpuInUseMemory, {})             \
    FIELD(std::vector<TemperatureReading>, temperatures, {})            \
    FIELD(std::vector<SensorGroup>, sensorGroups, {})                   \
    FIELD(std::vector<FanReading>, fans, {})                            \
    FIELD(std::vector<PowerReading>, power, {})                         \
    FIELD(std::optional<BatteryInfo>, battery, {})                      \
    FIELD(std::optional<double>, cpuTemperature, {})                    \
    FIELD(std::optional<double>, gpuTemperature, {})                    \
    FIELD(std::uint64_t, totalMemory, 0)                                \
    FIELD(std::int64_t, availableStorage, 0)                            \
    FIELD(std::int64_t, totalStorage, 0)                                \
    FIELD(double, uptime, 0)                                            \
    FIELD(int, performanceCoreCount, 0)                                 \
    FIELD(std::vector<double>, coreUsages, {})                          \
    FIELD(History, cpuHistory, History(cpuHistoryLength, 0.0))          \
    FIELD(History, userCPUHistory, History(cpuHistoryLength, 0.0))      \
    FIELD(History, systemCPUHistory, History(cpuHistoryLength, 0.0))    \
    FIELD(History, loadOneHistory, History(loadHistoryLength, 0.0))     \
    FIELD(History, loadFiveHistory, History(loadHistoryLength, 0.0))    \
    FIELD(History, loadFifteenHistory, History(loadHistoryLength, 0.0)) \
    FIELD(ThermalState, thermalState, ThermalState::unknown)            \
    FIELD(MemoryPressureLevel, memoryPressureLevel, MemoryPressureLevel::normal)

/// Every published field of the monitor, with its initial value (see CORVANE_MONITOR_FIELDS).
struct MonitorFields {
#define CORVANE_DECLARE_FIELD(type, name, initial) type name = initial;
    CORVANE_MONITOR_FIELDS(CORVANE_DECLARE_FIELD)
#undef CORVANE_DECLARE_FIELD
};

/// Names what an observer can watch: each published field, in declaration order, then the set
/// of open panels.
// The formatter cannot tell that the macro expands to cases.
// clang-format off
enum class MonitorField : std::size_t {
#define CORVANE_FIELD_CASE(type, name, initial) name,
    CORVANE_MONITOR_FIELDS(CORVANE_FIELD_CASE)
#undef CORVANE_FIELD_CASE
    openPopovers,
};
// clang-format on

inline constexpr std::size_t monitorFieldCount =
    static_cast<std::size_t>(MonitorField::openPopovers) + 1;

/// Calls `visit(name, value)` for every published field of `fields`, in declaration order, with
/// the field's name as the model spells it ("cpuUsage", ...).
template <typename Visitor>
void forEachPublishedField(const MonitorFields& fields, Visitor&& visit) {
#define CORVANE_VISIT_FIELD(type, name, initial) visit(std::string_view(#name), fields.name);
    CORVANE_MONITOR_FIELDS(CORVANE_VISIT_FIELD)
#undef CORVANE_VISIT_FIELD
}

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
