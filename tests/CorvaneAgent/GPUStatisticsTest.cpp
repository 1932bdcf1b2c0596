#include "CorvaneAgent/GPUStatistics.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>

namespace corvane {
namespace {

TEST(GPUStatistics, LooksFiguresUpThroughCandidateKeys) {
    struct Row {
        std::string_view name;
        StatisticsDictionary statistics;
        GPUStatistics expected;
    };
    // Above both 2^53 (a double loses the last byte) and the largest signed 64-bit number.
    constexpr std::uint64_t beyondDoublePrecision = (std::uint64_t{1} << 63) + 1;
    const Row rows[] = {
        {"nothing", StatisticsDictionary::object(), {}},
        {"percent under the last key", {{"GPU Core Utilization", 37}}, {.gpuUsage = 0.37}},
        {"fraction under a percent name", {{"Device Utilization %", 0.8}}, {.gpuUsage = 0.8}},
        {"above 100 percent clamped", {{"Renderer Utilization", 250}}, {.gpuRendererUsage = 1.0}},
        {"negative becomes 0", {{"Tiler Utilization %", -5}}, {.gpuTilerUsage = 0.0}},
        {"earlier key wins",
         {{"Device Utilization", 0.2}, {"GPU Activity(%)", 90}},
         {.gpuUsage = 0.2}},
        {"a string is passed over",
         {{"Device Utilization %", "37"}, {"Device Utilization", 0.5}},
         {.gpuUsage = 0.5}},
        {"negative bytes give nothing and do not fall through",
         {{"Alloc system memory", -1}, {"gartUsedBytes", 4096}},
         {}},
        {"last byte keys when the first two are missing",
         {{"gartUsedBytes", 4096}, {"inUseSysMemoryBytes", 2048.9}},
         {.gpuAllocatedMemory = 4096, .gpuInUseMemory = 2048}},
        {"byte counts kept exact",
         {{"In use system memory", beyondDoublePrecision}},
         {.gpuInUseMemory = beyondDoublePrecision}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(gpuStatisticsFrom(row.statistics), row.expected);
    }
}

}  // namespace
}  // namespace corvane
