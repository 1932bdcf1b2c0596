#include "CorvaneAgent/MemoryUsage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>

namespace corvane {
namespace {

constexpr std::uint64_t u64max = std::numeric_limits<std::uint64_t>::max();

struct RateRow {
    const char* name;
    std::uint64_t previous;
    std::uint64_t current;
    double elapsed;
    std::uint64_t rate;
};

TEST(PagingRate, BytesPerSecondTruncated) {
    const RateRow rows[] = {
        {"one 16 KiB page in a millisecond", 0, 16384, 0.001, 16'384'000},
        {"truncated toward zero", 0, 10, 3.0, 3},
        {"counter reset gives zero", 5000, 100, 1.0, 0},
        {"impossible rate holds at the maximum", 0, u64max, 0.001, u64max},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(pagingRate(row.previous, row.current, row.elapsed), row.rate);
    }
}

TEST(MemoryPressureLevel, OnlyTwoAndFourRaiseTheLevel) {
    EXPECT_EQ(memoryPressureLevelFromRaw(2), MemoryPressureLevel::warning);
    EXPECT_EQ(memoryPressureLevelFromRaw(4), MemoryPressureLevel::critical);
    for (auto raw : {std::optional<std::int32_t>(1), std::optional<std::int32_t>(3),
                     std::optional<std::int32_t>(0), std::optional<std::int32_t>()}) {
        EXPECT_EQ(memoryPressureLevelFromRaw(raw), MemoryPressureLevel::normal);
    }
}

}  // namespace
}  // namespace corvane
