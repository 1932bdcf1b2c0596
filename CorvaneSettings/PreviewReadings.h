#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "CorvaneAgent/MenuBarReadings.h"

namespace corvane {

/// Steady readings of an ordinary working moment (an eight-core processor with four fast
/// cores, a disk two-thirds full), so that the settings preview shows every part a meter can
/// draw whatever this machine reads. Main thread only.
class PreviewReadings final : public MenuBarReadings {
public:
    PreviewReadings();

    double cpuUsage() const override { return 0.34; }
    const std::vector<double>& coreUsages() const override { return cores; }
    int performanceCoreCount() const override { return 4; }
    const std::vector<bool>& performanceCores() const override { return fastCores; }
    const std::vector<double>& cpuHistory() const override { return history; }
    std::optional<double> cpuTemperature() const override { return 52.0; }
    std::optional<double> gpuTemperature() const override { return 47.0; }
    std::uint64_t swapUsed() const override { return 512ULL << 20; }
    std::int64_t availableStorage() const override { return 182LL * 1000 * 1000 * 1000; }
    std::optional<double> cpuWatts() const override { return 6.4; }
    std::optional<double> systemWatts() const override { return 14.2; }
    std::optional<double> hottestCelsius() const override { return 61.0; }
    std::optional<double> fastestFanRPM() const override { return 2100.0; }
    double memoryUsage() const override { return 0.58; }
    double memoryPressure() const override { return 0.22; }
    double storageUsage() const override { return 0.64; }

private:
    std::vector<double> cores;
    std::vector<bool> fastCores;
    std::vector<double> history;
};

}  // namespace corvane
