#include "CorvaneAgent/BatteryReader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string_view>

namespace corvane {
namespace {

// Every property present, so that each row shows what one change does.
StatisticsDictionary laptopProperties() {
    return {{"CurrentCapacity", 63},  {"MaxCapacity", 94.5}, {"CycleCount", 312.9},
            {"Voltage", 11963},       {"Amperage", -1250},   {"IsCharging", false},
            {"ExternalConnected", 1}, {"FullyCharged", 0},   {"TimeRemaining", 141}};
}

BatteryInfo laptopInfo() {
    return {.chargePercent = 63,
            .healthPercent = 94.5,
            .cycleCount = 312,
            .volts = 11.963,
            .amps = -1.25,
            .isPluggedIn = true,
            .minutesRemaining = 141};
}

TEST(BatteryReader, MapsPropertiesToTheRecord) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    struct Row {
        std::string_view name;
        const char* key;
        StatisticsDictionary value;  // null removes the property
        std::optional<BatteryInfo> expected;
    };
    auto with = [](auto change) {
        auto info = laptopInfo();
        change(info);
        return std::optional(info);
    };
    const Row rows[] = {
        {"every property", "CurrentCapacity", 63, laptopInfo()},
        {"no charge: no record", "CurrentCapacity", nullptr, std::nullopt},
        {"non-finite charge: no record", "CurrentCapacity", nan, std::nullopt},
        {"non-finite cycles", "CycleCount", nan, with([](auto& i) { i.cycleCount = 0; })},
        {"cycles beyond int", "CycleCount", 1e12, with([](auto& i) { i.cycleCount = 0; })},
        {"boolean voltage is no number", "Voltage", true, with([](auto& i) { i.volts = 0; })},
        {"boolean flag", "FullyCharged", true, with([](auto& i) { i.isFullyCharged = true; })},
        {"string flag is false", "ExternalConnected", "yes",
         with([](auto& i) { i.isPluggedIn = false; })},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        auto properties = laptopProperties();
        if (row.value.is_null()) {
            properties.erase(row.key);
        } else {
            properties[row.key] = row.value;
        }
        EXPECT_EQ(batteryInfoFrom(properties), row.expected);
    }
    EXPECT_EQ(batteryInfoFrom(StatisticsDictionary::array({63})), std::nullopt);
}

// A day or more is no estimate; 65535 is the gauges' "unknown".
TEST(BatteryReader, KeepsMinutesBelowADay) {
    const std::pair<double, std::optional<int>> rows[] = {
        {0, std::nullopt}, {65535, std::nullopt}, {1440, std::nullopt},
        {1439, 1439},      {59.99, 59},           {std::nan(""), std::nullopt}};
    for (const auto& [minutes, expected] : rows) {
        auto properties = laptopProperties();
        properties["TimeRemaining"] = minutes;
        EXPECT_EQ(batteryInfoFrom(properties)->minutesRemaining, expected) << minutes;
    }
}

class FakeBattery final : public BatteryPropertySource {
public:
    std::optional<StatisticsDictionary> properties() const override { return laptopProperties(); }
};

TEST(BatteryReader, LooksTheBatteryUpOnceAndRemembersNone) {
    for (const bool present : {true, false}) {
        SCOPED_TRACE(present ? "battery" : "desktop");
        int lookups = 0;
        BatteryReader reader([&]() -> std::unique_ptr<BatteryPropertySource> {
            ++lookups;
            return present ? std::make_unique<FakeBattery>() : nullptr;
        });
        const auto expected = present ? std::optional(laptopInfo()) : std::nullopt;
        EXPECT_EQ(reader.read(), expected);
        EXPECT_EQ(reader.read(), expected);
        EXPECT_EQ(lookups, 1);
    }
}

}  // namespace
}  // namespace corvane
