#include "CorvaneShared/CoreTopology.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace corvane
