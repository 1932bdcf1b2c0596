#include "CorvaneShared/CoreTopology.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

TEST(CoreTopology, BuildsTiersFromPerformanceLevels) {
    struct Row {
        std::string_view name;
        PerformanceLevels levels;
        std::vector<CoreTier> expected;
        int totalWithFourActive;
    };
    const Row rows[] = {
        {"no levels reported", {}, {}, 4},
        {"zero levels", {0, {{8, "Performance"}}}, {}, 4},
        {"two named levels",
         {2, {{8, "Performance"}, {8, "Efficiency"}}},
         {{"Performance", 8}, {"Efficiency", 8}},
         16},
        {"an unreadable count skips only its level",
         {3, {{std::nullopt, "Prime"}, {3, "Performance"}, {4, "Efficiency"}}},
         {{"Performance", 3}, {"Efficiency", 4}},
         7},
        {"missing and empty names are numbered",
         {2, {{6, std::nullopt}, {2, ""}}},
         {{"Level 0", 6}, {"Level 1", 2}},
         8},
        {"a count beyond the described levels", {3, {{4, "Performance"}}}, {{"Performance", 4}}, 4},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto tiers = coreTiersFrom(row.levels);
        EXPECT_EQ(tiers, row.expected);
        EXPECT_EQ(totalCores(tiers, 4), row.totalWithFourActive);
    }
}

TEST(CoreTopology, MarksTheFastestTiersCPUsByTheirNumbers) {
    using Mask = std::vector<bool>;
    using Numbers = std::vector<std::uint32_t>;
    const std::vector<CoreTier> bigLittle = {{"Performance", 2, {4, 5}},
                                             {"Efficiency", 4, {0, 1, 2, 3}}};
    struct Row {
        std::string_view name;
        std::vector<CoreTier> tiers;
        Numbers numbers;
        std::size_t cores;
        Mask expected;
    };
    const Row rows[] = {
        {"one kind of core", {}, {0, 1, 2}, 3, {false, false, false}},
        {"fast cores numbered last",
         bigLittle,
         {0, 1, 2, 3, 4, 5},
         6,
         {false, false, false, false, true, true}},
        {"an offline little core shifts the readings",
         bigLittle,
         {0, 2, 3, 4, 5},
         5,
         {false, false, false, true, true}},
        {"readings without numbers stand for CPU 0, 1, ...",
         bigLittle,
         {},
         6,
         {false, false, false, false, true, true}},
        {"a tier that does not list its CPUs takes the first readings",
         {{"Performance", 2}, {"Efficiency", 2}},
         {0, 1, 2, 3},
         4,
         {true, true, false, false}},
        {"a count beyond the readings",
         {{"Performance", 9}, {"Efficiency", 1}},
         {0, 1},
         2,
         {true, true}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(performanceCoreMask(row.tiers, row.numbers, row.cores), row.expected);
    }
}

}  // namespace
}  // namespace corvane
