#include <gtest/gtest.h>

#include <filesystem>
#include <string_view>

#include "Platform/Linux/AmdgpuStatisticsSource.h"
#include "Platform/Linux/LinuxGPUStatisticsSource.h"
#include "Platform/Linux/NVMLStatisticsSource.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view missingLibrary = "libcorvane-no-such-nvml.so.1";

fs::path sysfsOf(std::string_view tree) {
    return fs::path(CORVANE_FIXTURES) / tree / "sys";
}

struct Row {
    std::string_view name;
    std::string_view tree;
    std::string_view nvmlLibrary;
    StatisticsDictionary expected;
};

// Utilisations are written as fractions: a percentage of 1 would read as a whole GPU.
TEST(AmdgpuStatisticsSource, ReadsEachFixtureTree) {
    const Row rows[] = {
        {"one card at 1 percent, connector and render node skipped",
         "gpu-amdgpu-desktop",
         "",
         {{"Device Utilization", 0.01},
          {"gartUsedBytes", 52428800},
          {"inUseSysMemoryBytes", 2147483648 + 52428800}}},
        {"a sleeping Intel card adds nothing",
         "gpu-hybrid-laptop",
         "",
         {{"Device Utilization", 0.63},
          {"gartUsedBytes", 16777216},
          {"inUseSysMemoryBytes", 1073741824 + 16777216}}},
        {"a suspended card is idle and its busy file stays unread",
         "gpu-amdgpu-asleep",
         "",
         {{"Device Utilization", 0.0},
          {"gartUsedBytes", 8388608},
          {"inUseSysMemoryBytes", 268435456 + 8388608}}},
        {"no drm directory", "no-such-tree", "", StatisticsDictionary::object()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(AmdgpuStatisticsSource(sysfsOf(row.tree)).performanceStatistics(), row.expected);
    }
}

TEST(NVMLStatisticsSource, ReadsEveryDeviceOrNothing) {
    const Row rows[] = {
        {"the first device's memory, the second's utilisation",
         "",
         CORVANE_FAKE_NVML,
         {{"Device Utilization", 0.42}, {"inUseSysMemoryBytes", 1610612736}}},
        {"missing library", "", missingLibrary, StatisticsDictionary::object()},
        {"a library without NVML", "", "libm.so.6", StatisticsDictionary::object()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        NVMLStatisticsSource source{std::string(row.nvmlLibrary)};
        EXPECT_EQ(source.performanceStatistics(), row.expected);
        // The library stays loaded between reads.
        EXPECT_EQ(source.performanceStatistics(), row.expected);
    }
}

TEST(LinuxGPUStatisticsSource, MergesWithAmdgpuFirst) {
    const Row rows[] = {
        {"no GPU", "no-such-tree", missingLibrary, StatisticsDictionary::object()},
        {"NVIDIA only",
         "no-such-tree",
         CORVANE_FAKE_NVML,
         {{"Device Utilization", 0.42}, {"inUseSysMemoryBytes", 1610612736}}},
        {"amdgpu's values stand",
         "gpu-hybrid-laptop",
         CORVANE_FAKE_NVML,
         {{"Device Utilization", 0.63},
          {"gartUsedBytes", 16777216},
          {"inUseSysMemoryBytes", 1073741824 + 16777216}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        LinuxGPUStatisticsSource source(sysfsOf(row.tree), std::string(row.nvmlLibrary));
        EXPECT_EQ(source.performanceStatistics(), row.expected);
    }
}

}  // namespace
}  // namespace corvane
