#include "CorvaneAgent/CPUUsage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <optional>

namespace corvane {
namespace {

constexpr std::uint32_t u32max = std::numeric_limits<std::uint32_t>::max();
constexpr std::uint64_t u64max = std::numeric_limits<std::uint64_t>::max();

struct FractionsRow {
    const char* name;
    HostCPULoad previous;
    HostCPULoad current;
    std::optional<double> user;
    double system;
};

TEST(CPUFractions, SplitsTicksBetweenTwoSamples) {
    const FractionsRow rows[] = {
        {"nice counts as user", {10, 10, 10, 10}, {30, 40, 40, 30}, 0.4, 0.3},
        {"wrapped counter gives its small delta", {u32max - 9, 0, 0, 0}, {10, 0, 80, 0}, 0.2, 0.0},
        {"no tick elapsed", {5, 5, 5, 5}, {5, 5, 5, 5}, std::nullopt, 0.0},
        {"all idle", {0, 0, 0, 0}, {0, 0, 100, 0}, 0.0, 0.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        auto fractions = cpuFractions(row.previous, row.current);
        ASSERT_EQ(fractions.has_value(), row.user.has_value());
        if (fractions) {
            EXPECT_DOUBLE_EQ(fractions->user, *row.user);
            EXPECT_DOUBLE_EQ(fractions->system, row.system);
            EXPECT_DOUBLE_EQ(fractions->total(), *row.user + row.system);
        }
    }
}

TEST(CPUFractions, SumsTicksBeyondThirtyTwoBits) {
    // Four deltas near 2^32 each must not overflow when added up.
    HostCPULoad previous{0, 0, 0, 0};
    HostCPULoad current{u32max, u32max, u32max, u32max};
    auto fractions = cpuFractions(previous, current);
    ASSERT_TRUE(fractions);
    EXPECT_DOUBLE_EQ(fractions->user, 0.5);
    EXPECT_DOUBLE_EQ(fractions->system, 0.25);
}

struct CoreRow {
    const char* name;
    CoreTicks previous;
    CoreTicks current;
    double usage;
};

TEST(CoreUsage, BusyFractionOfOneCPU) {
    const CoreRow rows[] = {
        {"three quarters busy", {100, 50}, {200, 75}, 0.75},
        {"no tick elapsed", {100, 50}, {100, 50}, 0.0},
        {"total back by one tick", {100, 50}, {99, 50}, 0.0},
        {"idle delta above total delta", {100, 50}, {110, 70}, 0.0},
        {"idle went backwards", {100, 50}, {110, 40}, 0.0},
        {"64-bit wrap", {u64max - 9, 0}, {10, 5}, 0.75},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_DOUBLE_EQ(coreUsage(row.previous, row.current), row.usage);
    }
}

}  // namespace
}  // namespace corvane
