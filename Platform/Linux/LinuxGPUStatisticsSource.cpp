#include "Platform/Linux/LinuxGPUStatisticsSource.h"

#include <utility>

namespace corvane {

LinuxGPUStatisticsSource::LinuxGPUStatisticsSource(const std::filesystem::path& sysRoot,
                                                   std::string nvmlLibrary)
    : amdgpu(sysRoot), nvml(std::move(nvmlLibrary)) {}

StatisticsDictionary LinuxGPUStatisticsSource::performanceStatistics() {
    auto statistics = amdgpu.performanceStatistics();
    const auto nvidia = nvml.performanceStatistics();
    // insert() keeps a name already present: an amdgpu card's value stands.
    statistics.insert(nvidia.begin(), nvidia.end());
    return statistics;
}

}  // namespace corvane
