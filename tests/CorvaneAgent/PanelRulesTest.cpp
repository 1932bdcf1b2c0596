#include "CorvaneAgent/PanelRules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "CorvaneShared/SettingsStore.h"

namespace corvane {
namespace {

UnitSources englishUS(const SettingsStore& settings) {
    return {settings, [] { return std::string("en"); },
            [](std::string_view key) { return std::string(key); },
            [](const char* name) -> const char* {
                return std::string_view(name) == "LANG" ? "en_US.UTF-8" : nullptr;
            }};
}

TEST(PanelRules, WholeSharesAddUpToAHundred) {
    struct Row {
        const char* name;
        double user;
        double system;
        WholeShares expected;
    };
    const std::vector<Row> rows = {
        {"system cut to the rest", 0.625, 0.5, {63, 37, 0}},
        {"all idle", 0, 0, {0, 0, 100}},
        {"user above one counts as one", 1.7, 0.2, {100, 0, 0}},
        {"halves away from zero", 0.125, 0.245, {13, 25, 62}},
        {"negative shares count as zero", -0.3, -1, {0, 0, 100}},
        {"infinite user is full", std::numeric_limits<double>::infinity(), 0.1, {100, 0, 0}},
        {"ordinary split", 0.31, 0.12, {31, 12, 57}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(wholeShares(row.user, row.system), row.expected) << row.name;
    }
}

TEST(PanelRules, BatteryStatusFollowsItsPriority) {
    struct Row {
        bool charging, full, plugged;
        std::string_view expected;
    };
    const std::vector<Row> rows = {
        {true, true, true, "Charging"},        {false, true, true, "Fully Charged"},
        {false, true, false, "Fully Charged"}, {false, false, true, "Power Adapter"},
        {false, false, false, "Discharging"},  {true, false, false, "Charging"},
    };
    for (const Row& row : rows) {
        BatteryInfo battery;
        battery.isCharging = row.charging;
        battery.isFullyCharged = row.full;
        battery.isPluggedIn = row.plugged;
        EXPECT_EQ(batteryStatusKey(battery), row.expected)
            << row.charging << row.full << row.plugged;
    }
}

TEST(PanelRules, TemperatureThresholdsAreInclusive) {
    const std::vector<std::pair<double, TemperatureLevel>> rows = {
        {84.99, TemperatureLevel::normal}, {85.0, TemperatureLevel::warm},
        {94.99, TemperatureLevel::warm},   {95.0, TemperatureLevel::hot},
        {-40, TemperatureLevel::normal},   {130, TemperatureLevel::hot},
    };
    for (const auto& [celsius, level] : rows) {
        EXPECT_EQ(temperatureLevel(celsius), level) << celsius;
    }
}

TEST(PanelRules, FanPercentageNeedsBothLimits) {
    InMemorySettingsStore settings;
    const UnitSources sources = englishUS(settings);
    struct Row {
        const char* name;
        double rpm;
        std::optional<double> minimum, maximum;
        std::string expected;
    };
    const std::vector<Row> rows = {
        {"midway", 3500, 2000, 5000, "50%"},
        {"below the minimum", 1000, 2000, 5000, "0%"},
        {"above the maximum", 6400, 2000, 5000, "100%"},
        {"equal limits", 2000, 2000, 2000, ""},
        {"no maximum", 2000, 1200, std::nullopt, ""},
        {"no minimum", 2000, std::nullopt, 5000, ""},
    };
    for (const Row& row : rows) {
        FanReading fan{"F0Ac", 0, row.rpm, row.minimum, row.maximum};
        EXPECT_EQ(fanPercentText(fan, sources), row.expected) << row.name;
    }
    // The column is measured on the four-digit text and rounded up before the margin.
    EXPECT_EQ(rpmColumnWidth([](const std::string& text) { return text.size() * 5.1; }, sources),
              std::ceil(std::string("9,999 RPM").size() * 5.1) + 2);
}

TEST(PanelRules, AmountsNeverWrap) {
    EXPECT_EQ(availableMemory(8, 3), 5u);
    EXPECT_EQ(availableMemory(8, 12), 0u);
    EXPECT_EQ(availableMemory(0, 5), 0u);
    EXPECT_EQ(usedStorage(100, 40), 60);
    EXPECT_EQ(usedStorage(100, 140), 0);
    EXPECT_EQ(shareOf(5, 0), 0.0);
}

TEST(PanelRules, PatternsAndCoresJoinInOrder) {
    EXPECT_EQ(fillPattern("%@ of %@", {"1 GB", "2 GB"}), "1 GB of 2 GB");
    EXPECT_EQ(fillPattern("Lüfter %lld", {"2"}), "Lüfter 2");
    EXPECT_EQ(fillPattern("%@ free", {"%@"}), "%@ free");
    EXPECT_EQ(coresText({{"Performance", 4}, {"Efficiency", 8}}, 12),
              "4 Performance + 8 Efficiency");
    EXPECT_EQ(coresText({{"Performance", 6}}, 6), "6 Performance");
    EXPECT_EQ(coresText({}, 2), "2");
}

}  // namespace
}  // namespace corvane
