#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/GPUStatisticsSource.h"
#include "Platform/Linux/KernelFileReader.h"

namespace corvane {

/// What one amdgpu card's sysfs files say. Each figure is absent when its file is missing or
/// unreadable (older kernels, other drivers).
struct AmdgpuReading {
    /// gpu_busy_percent, whole percent; 0 without asking while the card is runtime-suspended.
    std::optional<std::uint64_t> busyPercent;
    /// mem_info_vram_used, bytes of the card's own memory in use.
    std::optional<std::uint64_t> vramUsedBytes;
    /// mem_info_gtt_used, bytes of system memory the card has mapped through its GART.
    std::optional<std::uint64_t> gttUsedBytes;
};

/// The card's figures under the names the monitor looks up: "Device Utilization" (a fraction),
/// "gartUsedBytes" (GTT in use) and "inUseSysMemoryBytes" (VRAM and GTT in use together).
[[nodiscard]] StatisticsDictionary statisticsFromAmdgpu(const AmdgpuReading& reading);

/// The statistics of the amdgpu cards under <sysfs>/class/drm (card0, card1, … in number order;
/// connectors and render nodes are skipped), merged with the lowest card number winning. Cards
/// of other drivers have none of these files and add nothing. Main thread.
class AmdgpuStatisticsSource final : public GPUStatisticsSource {
public:
    explicit AmdgpuStatisticsSource(const std::filesystem::path& sysRoot = "/sys");

    StatisticsDictionary performanceStatistics() override;

private:
    AmdgpuReading readCard(const std::string& deviceDirectory);
    bool isRuntimeSuspended(const std::string& deviceDirectory);
    std::optional<std::uint64_t> readNumber(const std::string& path);

    KernelFileReader reader;
    std::string drmDirectory;
};

}  // namespace corvane
