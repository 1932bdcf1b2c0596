#include <gtest/gtest.h>

#include "CorvaneAgent/SamplingPlan.h"
#include "CorvaneShared/SettingsStore.h"

namespace corvane {
namespace {

using Scope = SamplingPlan::SMCScope;

struct PlanRow {
    const char* name;
    const char* storedJSON;
    std::set<MonitorSection> open;
    SamplingPlan expected;
};

SamplingPlan plan(bool processes, bool gpu, bool battery, int storageEvery, Scope scope) {
    return {processes, gpu, battery, storageEvery, scope};
}

constexpr const char* allHidden =
    R"({"showCPUItem": false, "showMemoryItem": false, "showStorageItem": false,
        "showSensorsItem": false})";

TEST(SamplingPlan, FollowsVisibleMetersReadoutsAndOpenPanels) {
    const PlanRow rows[] = {
        {"nothing stored", "{}", {}, plan(true, false, false, 15, Scope::menuBar)},
        {"every meter hidden", allHidden, {}, plan(false, false, false, 15, Scope::none)},
        {"hidden meters but the memory panel open",
         allHidden,
         {MonitorSection::memory},
         plan(true, false, false, 15, Scope::none)},
        {"hidden meters but the cpu panel open",
         allHidden,
         {MonitorSection::cpu},
         plan(true, true, false, 15, Scope::menuBar)},
        {"sensors panel open",
         allHidden,
         {MonitorSection::sensors},
         plan(false, true, true, 15, Scope::full)},
        {"storage panel open",
         "{}",
         {MonitorSection::storage},
         plan(true, false, false, 3, Scope::menuBar)},
        {"hottest readout reads every sensor",
         R"({"sensorsReadout": "hottest"})",
         {},
         plan(true, false, false, 15, Scope::full)},
        {"hottest readout on a hidden meter",
         R"({"sensorsReadout": "hottest", "showSensorsItem": false})",
         {},
         plan(true, false, false, 15, Scope::menuBar)},
        {"sensors off and cpu usage",
         R"({"sensorsReadout": "off", "cpuReadout": "usage"})",
         {},
         plan(true, false, false, 15, Scope::none)},
        {"cpu power readout",
         R"({"sensorsReadout": "off", "cpuReadout": "power"})",
         {},
         plan(true, false, false, 15, Scope::menuBar)},
        {"cpu usage readout, fan readout",
         R"({"sensorsReadout": "fan", "cpuReadout": "usage"})",
         {},
         plan(true, false, false, 15, Scope::menuBar)},
        {"unknown readouts fall back",
         R"({"sensorsReadout": "Hottest", "cpuReadout": 3})",
         {},
         plan(true, false, false, 15, Scope::menuBar)},
        {"a visibility value of the wrong type still shows the meter",
         R"({"showCPUItem": "no", "showMemoryItem": 0, "showStorageItem": false,
             "showSensorsItem": false, "cpuReadout": "usage"})",
         {},
         plan(true, false, false, 15, Scope::none)},
        {"only the cpu meter, reading temperature",
         R"({"showCPUItem": true, "showMemoryItem": false, "showStorageItem": false,
             "showSensorsItem": false})",
         {},
         plan(true, false, false, 15, Scope::menuBar)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(SettingValue::parse(row.storedJSON));
        EXPECT_EQ(computeSamplingPlan(settings, row.open), row.expected);
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
