#include "Platform/Linux/LinuxGPUStatisticsSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string_view>

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
