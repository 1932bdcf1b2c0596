#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Linux/KernelFileReader.h"
#include "Platform/Linux/ThermalZones.h"
#include "Platform/SystemStatistics.h"

namespace corvane {

/// The system statistics of a Linux machine, read from procfs and sysfs under the given roots
/// (the real ones, or a fixture tree). Each call opens, reads and closes its files; nothing is
/// cached but the list of zram devices, which is looked for again every
/// `zramRescanInterval` memory reads, and the thermal zones with their trip points, found again
/// every `ThermalZones::rescanInterval` thermal reads. Main thread only.
class LinuxSystemStatistics final : public SystemStatistics {
public:
    /// How many readMemory() calls reuse one listing of <sysfs>/block (a minute at the default
    /// refresh interval): zram devices are set up at boot and rarely added later.
    static constexpr unsigned zramRescanInterval = 60;

    explicit LinuxSystemStatistics(const std::filesystem::path& procRoot = "/proc",
                                   const std::filesystem::path& sysRoot = "/sys");

    /// One read of /proc/stat fills both the host record and the processor list.
    void readCPULoad(CPULoadSample& sample) override;
    /// From /proc/loadavg.
    std::optional<std::array<double, 3>> loadAverages() override;
    /// From one read each of /proc/meminfo and /proc/vmstat, plus every zram device's mm_stat.
    MemorySample readMemory() override;
    /// From the ten-second averages of /proc/pressure/memory; absent without PSI.
    std::optional<std::int32_t> memoryPressureLevel() override;
    /// From /proc/uptime.
    std::optional<double> uptimeSeconds() override;
    /// MemTotal of /proc/meminfo: the RAM the kernel manages, a little below what is installed.
    std::optional<std::uint64_t> physicalMemoryBytes() override;
    /// The first "model name" of /proc/cpuinfo, else the device tree's board model.
    std::optional<std::string> processorBrand() override;
    /// The worst state of the thermal zones under <sysfs>/class/thermal (see ThermalZones);
    /// absent when no zone has a usable trip point and temperature.
    std::optional<ThermalState> thermalState() override;

private:
    /// Bytes of RAM held by all zram devices; 0 when there are none.
    std::uint64_t readZramBytes();
    void findZramDevices();

    KernelFileReader reader;
    // Built once, so that a refresh builds no path.
    std::string statPath;
    std::string meminfoPath;
    std::string vmstatPath;
    std::string memoryPressurePath;
    std::string loadavgPath;
    std::string uptimePath;
    std::string cpuinfoPath;
    std::string devicetreeModelPath;
    std::string blockDirectory;
    std::vector<std::string> zramStatPaths;
    unsigned memoryReadsSinceZramScan = zramRescanInterval;
    ThermalZones thermalZones;
};

}  // namespace corvane
