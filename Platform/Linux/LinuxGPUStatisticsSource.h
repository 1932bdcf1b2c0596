#pragma once

#include <filesystem>
#include <string>

#include "Platform/GPUStatisticsSource.h"
#include "Platform/Linux/AmdgpuStatisticsSource.h"
#include "Platform/Linux/NVMLStatisticsSource.h"

namespace corvane {

/// The statistics of every GPU Linux lets an unprivileged program read: amdgpu cards through
/// sysfs, then NVIDIA GPUs through NVML. Merged with the first value of a name winning (amdgpu
/// before NVIDIA); an empty object when no GPU can be read. Logs nothing. Main thread.
class LinuxGPUStatisticsSource final : public GPUStatisticsSource {
public:
    /// `nvmlLibrary`: the NVML library's name or path.
    explicit LinuxGPUStatisticsSource(
        const std::filesystem::path& sysRoot = "/sys",
        std::string nvmlLibrary = NVMLStatisticsSource::defaultLibrary);

    StatisticsDictionary performanceStatistics() override;

private:
    AmdgpuStatisticsSource amdgpu;
    NVMLStatisticsSource nvml;
};

}  // namespace corvane
