#include "CorvaneAgent/SensorReadings.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace corvane {
namespace {

TEST(FanReading, LoadIsThePlaceOfTheSpeedBetweenItsLimits) {
    struct Row {
        const char* name;
        double rpm;
        std::optional<double> minimumRPM, maximumRPM;
        std::optional<double> load;
    };
    const Row rows[] = {
        {"a quarter of the way", 2500, 2000, 4000, 0.25},
        {"no maximum", 2500, 2000, std::nullopt, std::nullopt},
        {"no minimum", 2500, std::nullopt, 4000, std::nullopt},
        {"stopped below its minimum", 0, 2000, 4000, 0.0},
        {"above its maximum", 4500, 2000, 4000, 1.0},
        {"limits equal", 2000, 2000, 2000, std::nullopt},
        {"limits the wrong way round", 3000, 4000, 2000, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const FanReading fan{"F0Ac", 0, row.rpm, row.minimumRPM, row.maximumRPM};
        EXPECT_EQ(fan.load(), row.load);
    }
}

// Groups and power readings show the title and symbol of their category or channel, the title
// in the interface language.
TEST(SensorReadings, GroupsAndPowerReadingsShowTheirTitleAndSymbol) {
    const TextLookup translate = [](std::string_view key) { return "<" + std::string(key) + ">"; };
    struct Shown {
        std::string title;
        std::string_view icon;
    };
    const auto group = [&](SensorCategory category) {
        const SensorGroup shown{category, 40.0};
        return Shown{shown.title(translate), shown.icon()};
    };
    const auto power = [&](PowerChannel channel) {
        const PowerReading shown{channel, 12.5};
        return Shown{shown.title(translate), shown.icon()};
    };
    const std::pair<Shown, Shown> rows[] = {
        {group(SensorCategory::cpu), {"<CPU>", "cpu"}},
        {group(SensorCategory::gpu), {"<GPU>", "cube.transparent"}},
        {group(SensorCategory::memory), {"<Memory>", "memorychip"}},
        {group(SensorCategory::storage), {"<Storage>", "internaldrive"}},
        {group(SensorCategory::battery), {"<Battery>", "battery.100"}},
        {group(SensorCategory::ambient), {"<Ambient>", "wind"}},
        {group(SensorCategory::other), {"<Other>", "thermometer.medium"}},
        {power(PowerChannel::system), {"<System>", "bolt"}},
        {power(PowerChannel::cpu), {"<CPU>", "cpu"}},
        {power(PowerChannel::gpu), {"<GPU>", "cube.transparent"}},
    };
    for (const auto& [shown, expected] : rows) {
        SCOPED_TRACE(expected.title);
        EXPECT_EQ(shown.title, expected.title);
        EXPECT_EQ(shown.icon, expected.icon);
    }
    EXPECT_EQ((PowerReading{PowerChannel::gpu, 3.0}).id(), "gpu");
}

}  // namespace
}  // namespace corvane
