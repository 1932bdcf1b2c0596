#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {

/// What a menu-bar meter reads from the model, and nothing more. Main thread only.
class MenuBarReadings {
public:
    virtual ~MenuBarReadings() = default;

    virtual double cpuUsage() const = 0;
    virtual const std::vector<double>& coreUsages() const = 0;
    virtual int performanceCoreCount() const = 0;
    /// One entry per entry of coreUsages: whether that CPU is in the fastest tier. All false
    /// (or empty before the first sample) on a processor with one kind of core.
    virtual const std::vector<bool>& performanceCores() const = 0;
    virtual const std::vector<double>& cpuHistory() const = 0;
    virtual std::optional<double> cpuTemperature() const = 0;
    virtual std::optional<double> gpuTemperature() const = 0;
    virtual std::uint64_t swapUsed() const = 0;
    virtual std::int64_t availableStorage() const = 0;
    virtual std::optional<double> cpuWatts() const = 0;
    virtual std::optional<double> systemWatts() const = 0;
    virtual std::optional<double> hottestCelsius() const = 0;
    virtual std::optional<double> fastestFanRPM() const = 0;
    virtual double memoryUsage() const = 0;
    virtual double memoryPressure() const = 0;
    virtual double storageUsage() const = 0;
};

}  // namespace corvane
