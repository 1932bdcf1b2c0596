#include "Platform/Linux/PowerSupplyBattery.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string_view>

namespace corvane {
namespace {

namespace fs = std::filesystem;

// Expected values are written as the fixture files' own numbers (µV, µA, µWh, µAh, µW).
TEST(PowerSupplyBattery, ReadsEachFixtureTree) {
    struct Row {
        std::string_view tree;
        std::optional<StatisticsDictionary> expected;
        std::optional<double> dischargeWatts;
    };
    const Row rows[] = {
        // Positive current_now while discharging, an empty cycle_count, minutes from charge.
        {"intel-laptop-hybrid",
         StatisticsDictionary{{"CurrentCapacity", 63.0},
                              {"MaxCapacity", 4630000.0 / 4900000 * 100},
                              {"Voltage", 11963.0},
                              {"Amperage", -1250.0},
                              {"IsCharging", false},
                              {"FullyCharged", false},
                              {"ExternalConnected", false},
                              {"TimeRemaining", 2940000.0 / 1250000 * 60}},
         1250.0 * 11963 / 1e6},
        // Power only; a garbage time_to_full_now gives way to (full − now) ÷ power.
        {"intel-mac-applesmc",
         StatisticsDictionary{{"CurrentCapacity", 73.0},
                              {"MaxCapacity", 72900000.0 / 99500000 * 100},
                              {"CycleCount", 312},
                              {"Voltage", 12650.0},
                              {"Amperage", 27800000.0 / 12650000 * 1000},
                              {"IsCharging", true},
                              {"FullyCharged", false},
                              {"ExternalConnected", true},
                              {"TimeRemaining", (72900000.0 - 53250000) / 27800000 * 60}},
         std::nullopt},
        {"amd-desktop", std::nullopt, std::nullopt},          // only a mouse's battery
        {"arm-biglittle-board", std::nullopt, std::nullopt},  // no power_supply folder
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tree);
        const auto battery =
            PowerSupplyBattery::find(fs::path(CORVANE_FIXTURES) / row.tree / "sys");
        ASSERT_EQ(battery != nullptr, row.expected.has_value());
        if (!battery) {
            continue;
        }
        EXPECT_EQ(battery->properties(), row.expected);
        EXPECT_EQ(battery->dischargeWatts(), row.dischargeWatts);
    }
}

TEST(PowerSupplyBattery, StatusDecidesDirectionAndEstimate) {
    struct Row {
        std::string_view name;
        PowerSupplyReading reading;
        StatisticsDictionary amperage;  // null: left out
        StatisticsDictionary minutes;
    };
    const Row rows[] = {
        {"gauge counting charge as negative",
         {.status = PowerSupplyStatus::charging,
          .chargeNow = 1000000,
          .chargeFull = 3000000,
          .currentNow = -2000000},
         2000.0,
         60.0},
        {"gauge that already signs discharge",
         {.status = PowerSupplyStatus::discharging,
          .currentNow = -500000,
          .timeToEmptySeconds = 5400},
         -500.0,
         90.0},
        {"full: no estimate", {.status = PowerSupplyStatus::full, .currentNow = 0}, 0.0, nullptr},
        // The energy pair is garbage (no battery holds a negative amount), so the charge pair
        // gives the estimate.
        {"garbage energy while charging",
         {.status = PowerSupplyStatus::charging,
          .energyNow = 1,
          .energyFull = std::numeric_limits<std::int64_t>::min(),
          .chargeNow = 1000000,
          .chargeFull = 3000000,
          .currentNow = 2000000,
          .powerNow = 1000000},
         2000.0,
         60.0},
        {"at rest while discharging: no estimate",
         {.status = PowerSupplyStatus::discharging, .energyNow = 50, .powerNow = 0},
         nullptr,
         nullptr},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto properties = batteryPropertiesFrom(row.reading);
        EXPECT_EQ(properties.value("Amperage", StatisticsDictionary()), row.amperage);
        EXPECT_EQ(properties.value("TimeRemaining", StatisticsDictionary()), row.minutes);
    }
}

// Found by fuzzing: a gauge's capacity or energy readings past their ends gave charges above
// 100 % and below 0 %, and a negative energy a negative health.
TEST(PowerSupplyBattery, ChargeStaysAPercentage) {
    struct Row {
        std::string_view name;
        PowerSupplyReading reading;
        StatisticsDictionary charge;  // null: left out
        StatisticsDictionary health;
    };
    const Row rows[] = {
        {"capacity past full", {.capacityPercent = 101}, 100.0, nullptr},
        {"capacity below empty", {.capacityPercent = -4}, 0.0, nullptr},
        {"energy past full",
         {.energyNow = 51000000, .energyFull = 50000000, .energyFullDesign = 40000000},
         100.0,
         125.0},
        {"negative energy", {.energyNow = -5, .energyFull = -50000000}, nullptr, nullptr},
        {"negative charge with a full charge",
         {.chargeNow = -1, .chargeFull = 3000000, .chargeFullDesign = 4000000},
         nullptr,
         75.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const auto properties = batteryPropertiesFrom(row.reading);
        EXPECT_EQ(properties.value("CurrentCapacity", StatisticsDictionary()), row.charge);
        EXPECT_EQ(properties.value("MaxCapacity", StatisticsDictionary()), row.health);
    }
}

}  // namespace
}  // namespace corvane
