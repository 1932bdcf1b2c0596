#include <gtest/gtest.h>

#include <optional>
#include <set>

#include "CorvaneAgent/SamplingPlan.h"
#include "CorvaneShared/SettingsStore.h"

namespace corvane {
namespace {

using Scope = SamplingPlan::SMCScope;

SamplingPlan plan(bool processes, bool gpu, bool battery, int storageEvery, Scope scope) {
    return {processes, gpu, battery, storageEvery, scope};
}

constexpr const char* allHidden =
    R"({"showCPUItem": false, "showMemoryItem": false, "showStorageItem": false,
        "showSensorsItem": false})";

TEST(SamplingPlan, FollowsVisibleMetersReadoutsAndOpenPanels) {
    struct Row {
        const char* name;
        SamplingPlan expected;
        const char* storedJSON = "{}";
        std::optional<MonitorSection> open = std::nullopt;
    };
    using enum MonitorSection;
    const Row rows[] = {
        {"nothing stored", plan(true, false, false, 15, Scope::menuBar)},
        {"every meter hidden", plan(false, false, false, 15, Scope::none), allHidden},
        {"hidden meters but the memory panel open", plan(true, false, false, 15, Scope::none),
         allHidden, memory},
        {"hidden meters but the cpu panel open", plan(true, true, false, 15, Scope::menuBar),
         allHidden, cpu},
        {"sensors panel open", plan(false, true, true, 15, Scope::full), allHidden, sensors},
        {"storage panel open", plan(true, false, false, 3, Scope::menuBar), "{}", storage},
        {"hottest readout reads every sensor", plan(true, false, false, 15, Scope::full),
         R"({"sensorsReadout": "hottest"})"},
        {"hottest readout on a hidden meter", plan(true, false, false, 15, Scope::menuBar),
         R"({"sensorsReadout": "hottest", "showSensorsItem": false})"},
        {"sensors off and cpu usage", plan(true, false, false, 15, Scope::none),
         R"({"sensorsReadout": "off", "cpuReadout": "usage"})"},
        {"cpu power readout", plan(true, false, false, 15, Scope::menuBar),
         R"({"sensorsReadout": "off", "cpuReadout": "power"})"},
        {"cpu usage readout, fan readout", plan(true, false, false, 15, Scope::menuBar),
         R"({"sensorsReadout": "fan", "cpuReadout": "usage"})"},
        {"unknown readouts fall back", plan(true, false, false, 15, Scope::menuBar),
         R"({"sensorsReadout": "Hottest", "cpuReadout": 3})"},
        {"a visibility value of the wrong type still shows the meter",
         plan(true, false, false, 15, Scope::none),
         R"({"showCPUItem": "no", "showMemoryItem": 0, "showStorageItem": false,
             "showSensorsItem": false, "cpuReadout": "usage"})"},
        {"only the cpu meter, reading temperature", plan(true, false, false, 15, Scope::menuBar),
         R"({"showCPUItem": true, "showMemoryItem": false, "showStorageItem": false,
             "showSensorsItem": false})"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(SettingValue::parse(row.storedJSON));
        const std::set<MonitorSection> open =
            row.open ? std::set{*row.open} : std::set<MonitorSection>{};
        EXPECT_EQ(computeSamplingPlan(settings, open), row.expected);
    }
}

TEST(SamplingPlan, RegisteredDefaultsCountAsSettings) {
    // A registered `false` hides a meter like a stored one: reads fall through to the defaults.
    InMemorySettingsStore settings;
    settings.registerDefaults({{"showCPUItem", false},
                               {"showMemoryItem", false},
                               {"showStorageItem", false},
                               {"sensorsReadout", "off"}});
    EXPECT_EQ(computeSamplingPlan(settings, {}), plan(false, false, false, 15, Scope::none));
    settings.set("showStorageItem", true);
    EXPECT_TRUE(computeSamplingPlan(settings, {}).samplesProcesses);
}

}  // namespace
}  // namespace corvane
