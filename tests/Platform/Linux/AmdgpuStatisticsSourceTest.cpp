#include "Platform/Linux/AmdgpuStatisticsSource.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string_view>

namespace corvane {
namespace {

namespace fs = std::filesystem;

fs::path sysfsOf(std::string_view tree) {
    return fs::path(CORVANE_FIXTURES) / tree / "sys";
}

struct Row {
    std::string_view name;
    std::string_view tree;
    StatisticsDictionary expected;
};

// Utilisations are written as fractions: a percentage of 1 would read as a whole GPU.
TEST(AmdgpuStatisticsSource, ReadsEachFixtureTree) {
    const Row rows[] = {
        {"one card at 1 percent, connector and render node skipped",
         "gpu-amdgpu-desktop",
         {{"Device Utilization", 0.01},
          {"gartUsedBytes", 52428800},
          {"inUseSysMemoryBytes", 2147483648 + 52428800}}},
        {"a sleeping Intel card adds nothing",
         "gpu-hybrid-laptop",
         {{"Device Utilization", 0.63},
          {"gartUsedBytes", 16777216},
          {"inUseSysMemoryBytes", 1073741824 + 16777216}}},
        {"a suspended card is idle and its busy file stays unread",
         "gpu-amdgpu-asleep",
         {{"Device Utilization", 0.0},
          {"gartUsedBytes", 8388608},
          {"inUseSysMemoryBytes", 268435456 + 8388608}}},
        {"no drm directory", "no-such-tree", StatisticsDictionary::object()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(AmdgpuStatisticsSource(sysfsOf(row.tree)).performanceStatistics(), row.expected);
    }
}

TEST(AmdgpuStatisticsSource, MemorySumHoldsAtTheLargestNumber) {
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    const auto statistics = statisticsFromAmdgpu({.vramUsedBytes = largest - 1, .gttUsedBytes = 5});
    EXPECT_EQ(statistics["inUseSysMemoryBytes"], largest);
}

}  // namespace
}  // namespace corvane
