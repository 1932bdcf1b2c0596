#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// Whole-machine CPU time in clock ticks since boot. The counters are 32 bits wide and wrap;
/// readers subtract them with wrapping arithmetic.
struct HostCPULoad {
    std::uint32_t user = 0;
    std::uint32_t system = 0;
    std::uint32_t idle = 0;
    std::uint32_t nice = 0;

    friend bool operator==(const HostCPULoad&, const HostCPULoad&) = default;
};

/// One logical CPU's time in clock ticks since boot.
struct ProcessorLoad {
    std::uint64_t user = 0;
    std::uint64_t system = 0;
    std::uint64_t idle = 0;
    std::uint64_t nice = 0;

    friend bool operator==(const ProcessorLoad&, const ProcessorLoad&) = default;
};

/// Both CPU readings of one moment, taken together because one kernel file holds both.
struct CPULoadSample {
    /// Absent when the whole-machine counters could not be read.
    std::optional<HostCPULoad> host;
    /// One entry per online logical CPU in the kernel's order; empty when unreadable.
    std::vector<ProcessorLoad> processors;
    /// The kernel's CPU number of each entry of `processors`; a source that does not know them
    /// leaves this empty, and entry i then stands for CPU i.
    std::vector<std::uint32_t> processorNumbers;
};

/// Memory composition in bytes, and the cumulative paging totals in bytes.
struct VMStatistics {
    std::uint64_t wiredBytes = 0;
    std::uint64_t compressedBytes = 0;
    std::uint64_t activeBytes = 0;
    std::uint64_t inactiveBytes = 0;
    std::uint64_t pageInBytes = 0;
    std::uint64_t pageOutBytes = 0;

    friend bool operator==(const VMStatistics&, const VMStatistics&) = default;
};

/// Swap space in bytes.
struct SwapUsage {
    std::uint64_t totalBytes = 0;
    std::uint64_t usedBytes = 0;

    friend bool operator==(const SwapUsage&, const SwapUsage&) = default;
};

/// Memory and swap of one moment, taken together because one kernel file holds both.
struct MemorySample {
    /// Absent when the memory statistics could not be read.
    std::optional<VMStatistics> vm;
    /// Absent when the swap figures could not be read.
    std::optional<SwapUsage> swap;
};

/// The operating system's thermal state. `unknown` (and any other value outside the four named
/// levels) means the machine gives no usable reading.
enum class ThermalState : int {
    unknown = -1,
    nominal = 0,
    fair = 1,
    serious = 2,
    critical = 3,
};

/// The raw memory pressure levels a provider reports; other values read as normal.
namespace RawPressureLevel {
inline constexpr std::int32_t normal = 1;
inline constexpr std::int32_t warning = 2;
inline constexpr std::int32_t critical = 4;
}  // namespace RawPressureLevel

/// Kernel counters the monitor samples on every refresh, and the machine facts it reads once.
/// Every read either succeeds or reports absence; none throws. Main thread only.
class SystemStatistics {
public:
    virtual ~SystemStatistics() = default;

    /// Replaces `sample` with the current CPU counters (reusing its storage).
    virtual void readCPULoad(CPULoadSample& sample) = 0;
    /// The 1, 5 and 15 minute load averages; absent when fewer than three can be read.
    virtual std::optional<std::array<double, 3>> loadAverages() = 0;
    /// The current memory composition, paging totals and swap.
    virtual MemorySample readMemory() = 0;
    /// The memory pressure as a raw level (see RawPressureLevel); absent when unreadable.
    virtual std::optional<std::int32_t> memoryPressureLevel() = 0;
    /// Seconds since boot.
    virtual std::optional<double> uptimeSeconds() = 0;
    /// Installed physical memory in bytes.
    virtual std::optional<std::uint64_t> physicalMemoryBytes() = 0;
    /// The processor's marketing name; absent when unreadable or empty.
    virtual std::optional<std::string> processorBrand() = 0;
    /// The current thermal state; absent when the machine gives no usable reading.
    virtual std::optional<ThermalState> thermalState() = 0;
};

}  // namespace corvane
