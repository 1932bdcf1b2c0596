#include "Platform/Linux/ThermalZones.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string_view>

#include "Platform/Linux/LinuxSystemStatistics.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(ThermalZones, ZoneStateAtTheMargins) {
    const ThermalTrips passive{.passiveMillidegrees = 75000, .criticalMillidegrees = 115000};
    const ThermalTrips criticalOnly{.criticalMillidegrees = 100000};
    ThermalTrips hotBelowPassive;
    hotBelowPassive.add(ThermalTripType::passive, 90000);
    hotBelowPassive.add(ThermalTripType::hot, 80000);
    hotBelowPassive.add(ThermalTripType::active, 40000);
    struct Row {
        std::string_view name;
        std::int64_t millidegrees;
        ThermalTrips trips;
        std::optional<ThermalState> expected;
    };
    const Row rows[] = {
        {"below the fair margin", 64999, passive, ThermalState::nominal},
        {"fair margin", 65000, passive, ThermalState::fair},
        {"passive trip", 75000, passive, ThermalState::serious},
        {"just below the critical margin", 109999, passive, ThermalState::serious},
        {"critical margin", 110000, passive, ThermalState::critical},
        {"the lower of hot and passive throttles; fans do not", 80000, hotBelowPassive,
         ThermalState::serious},
        {"critical only: throttles 15 degrees below", 85000, criticalOnly, ThermalState::serious},
        {"sensor error code", -274000, passive, std::nullopt},
        {"no usable trip", 90000, {}, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(zoneThermalState(row.millidegrees, row.trips), row.expected);
    }
}

TEST(ThermalZones, WorstZoneOfEachFixtureTree) {
    struct Row {
        std::string_view tree;
        std::optional<ThermalState> expected;
    };
    const Row rows[] = {
        // Unset, invalid and unreadable zones have no say (see tests/fixtures/README.md).
        {"intel-laptop-hybrid", ThermalState::nominal},
        // bigcore0 at 68.3 °C is within 10 °C of its 75 °C passive trip.
        {"arm-biglittle-board", ThermalState::fair},
        {"intel-mac-applesmc", std::nullopt},  // x86_pkg_temp's trips are unset
        {"amd-desktop", std::nullopt},         // no thermal zones
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tree);
        const auto root = fs::path(CORVANE_FIXTURES) / row.tree;
        LinuxSystemStatistics statistics(root / "proc", root / "sys");
        EXPECT_EQ(statistics.thermalState(), row.expected);
        EXPECT_EQ(statistics.thermalState(), row.expected) << "from the remembered zones";
    }
}

}  // namespace
}  // namespace corvane
