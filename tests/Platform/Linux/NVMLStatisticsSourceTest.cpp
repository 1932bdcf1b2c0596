#include "Platform/Linux/NVMLStatisticsSource.h"

#include <gtest/gtest.h>

#include <string_view>

namespace corvane {
namespace {

constexpr std::string_view missingLibrary = "libcorvane-no-such-nvml.so.1";

struct Row {
    std::string_view name;
    std::string_view library;
    StatisticsDictionary expected;
};

TEST(NVMLStatisticsSource, ReadsEveryDeviceOrNothing) {
    const Row rows[] = {
        {"the first device's memory, the second's utilisation",
         CORVANE_FAKE_NVML,
         {{"Device Utilization", 0.42}, {"inUseSysMemoryBytes", 1610612736}}},
        {"missing library", missingLibrary, StatisticsDictionary::object()},
        {"a library without NVML", "libm.so.6", StatisticsDictionary::object()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        NVMLStatisticsSource source{std::string(row.library)};
        EXPECT_EQ(source.performanceStatistics(), row.expected);
        // The library stays loaded between reads.
        EXPECT_EQ(source.performanceStatistics(), row.expected);
    }
}

}  // namespace
}  // namespace corvane
