#pragma once

#include "Platform/SystemStatistics.h"

namespace corvane::testing {

/// Kernel counters a test sets by hand. Every reading answers what its member holds now.
struct FakeReadings {
    std::optional<HostCPULoad> host = HostCPULoad{};
    std::vector<ProcessorLoad> processors = {ProcessorLoad{}, ProcessorLoad{}};
    /// Empty: the source does not number its processors.
    std::vector<std::uint32_t> processorNumbers;
    std::optional<std::array<double, 3>> loadAverages = std::array<double, 3>{0.5, 0.25, 0.125};
    std::optional<VMStatistics> vm = VMStatistics{};
    std::optional<SwapUsage> swap = SwapUsage{};
    std::optional<std::int32_t> pressure = 1;
    std::optional<double> uptime = 100.0;
    std::optional<std::uint64_t> physicalMemory = 8ull << 30;
    std::optional<std::string> brand = "Test CPU";
    std::optional<ThermalState> thermal = ThermalState::nominal;
};

/// A SystemStatistics over readings the test owns and changes between refreshes.
class FakeSystemStatistics final : public SystemStatistics {
public:
    explicit FakeSystemStatistics(FakeReadings& readings) : readings(readings) {}

    void readCPULoad(CPULoadSample& sample) override {
        sample.host = readings.host;
        sample.processors = readings.processors;
        sample.processorNumbers = readings.processorNumbers;
    }
    std::optional<std::array<double, 3>> loadAverages() override { return readings.loadAverages; }
    MemorySample readMemory() override { return {readings.vm, readings.swap}; }
    std::optional<std::int32_t> memoryPressureLevel() override { return readings.pressure; }
    std::optional<double> uptimeSeconds() override { return readings.uptime; }
    std::optional<std::uint64_t> physicalMemoryBytes() override { return readings.physicalMemory; }
    std::optional<std::string> processorBrand() override { return readings.brand; }
    std::optional<ThermalState> thermalState() override { return readings.thermal; }

private:
    FakeReadings& readings;
};

}  // namespace corvane::testing
