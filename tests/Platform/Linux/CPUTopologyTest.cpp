#include "Platform/Linux/CPUTopology.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string_view>

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(CPUTopology, ParsesCPULists) {
    using List = std::vector<std::uint32_t>;
    struct Row {
        std::string_view name;
        std::string_view text;
        std::optional<List> expected;
    };
    const Row rows[] = {
        {"ranges and singles", "0-3,8,10-11\n", List{0, 1, 2, 3, 8, 10, 11}},
        {"empty mask", "\n", List{}},
        {"overlaps once, sorted", "8,0-2,1\n", List{0, 1, 2, 8}},
        {"reversed range", "7-3\n", std::nullopt},
        {"dangling comma", "0-3,\n", std::nullopt},
        {"beyond any machine", "0-4294967295\n", std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseCPUList(row.text), row.expected);
    }
}

TEST(CPUTopology, CountsOnlineCPUsPerLevel) {
    using Levels = std::vector<PerformanceLevel>;
    const auto core = std::optional(*parseCPUList("0-7"));
    const auto atom = std::optional(*parseCPUList("8-15"));
    EXPECT_EQ(hybridPerformanceLevels({core, atom, std::nullopt}, *parseCPUList("0-5,8-9")).levels,
              (Levels{{6, "Performance"}, {2, "Efficiency"}}));
    // With every E-core offline there is one kind of core left: no levels.
    EXPECT_EQ(hybridPerformanceLevels({core, atom, std::nullopt}, *parseCPUList("0-7")),
              PerformanceLevels{});
    EXPECT_EQ(capacityPerformanceLevels({1024, 1024, 1024}), PerformanceLevels{});
    EXPECT_EQ(capacityPerformanceLevels({512, 1024, 870, 870, 512}).levels,
              (Levels{{1, "Prime"}, {2, "Performance"}, {2, "Efficiency"}}));
    EXPECT_EQ(capacityPerformanceLevels({1024, 900, 800, 400}).levels,
              (Levels{{1, {}}, {1, {}}, {1, {}}, {1, {}}}));
}

TEST(CPUTopology, ReadsEachFixtureTree) {
    struct Row {
        std::string_view tree;
        PerformanceLevels expected;
    };
    const Row rows[] = {
        {"intel-laptop-hybrid", {2, {{8, "Performance"}, {8, "Efficiency"}}}},
        // cpu7 is offline; its cpu_capacity still reads 1024.
        {"arm-biglittle-board", {2, {{3, "Performance"}, {4, "Efficiency"}}}},
        {"amd-desktop", {}},
        {"no-such-tree", {}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tree);
        EXPECT_EQ(readPerformanceLevels(fs::path(CORVANE_FIXTURES) / row.tree / "sys"),
                  row.expected);
    }
}

}  // namespace
}  // namespace corvane
