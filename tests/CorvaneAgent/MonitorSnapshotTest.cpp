#include <gtest/gtest.h>

#include "CorvaneAgent/MonitorSnapshot.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SettingsStore.h"
#include "tests/CorvaneAgent/FakeSystemStatistics.h"
#include "tests/support/ManualScheduler.h"

namespace corvane {
namespace {

TEST(MonitorSnapshot, NamesEveryPublishedFieldTheDerivedValuesAndThePlan) {
    testing::ManualScheduler scheduler;
    InMemorySettingsStore settings;
    testing::FakeReadings readings;
    readings.swap = SwapUsage{.totalBytes = 2048, .usedBytes = 1024};
    auto monitor = SystemMonitor::create({
        .settings = settings,
        .runtime = scheduler.runtime(),
        .statistics = std::make_unique<testing::FakeSystemStatistics>(readings),
    });
    monitor->beginDetailedSampling(MonitorSection::sensors);
    monitor->start();

    const auto json = monitorSnapshot(*monitor);
    std::vector<std::string> keys;
    for (const auto& [key, value] : json.items()) {
        keys.push_back(key);
    }
    // The published fields lead, in declaration order, so a reader can diff two snapshots.
    for (std::size_t field = 0; field < publishedFieldCount; ++field) {
        const auto name = std::string(monitorFieldName(static_cast<MonitorField>(field)));
        ASSERT_LT(field, keys.size());
        EXPECT_EQ(keys[field], name);
    }
    for (const char* derived :
         {"memoryUsage", "memoryPressure", "storageUsage", "thermalStateLabel", "cpuWatts",
          "systemWatts", "hottestCelsius", "fastestFanRPM"}) {
        EXPECT_TRUE(json.contains(derived)) << derived;
    }
    EXPECT_EQ(json["swapUsed"], 1024);
    EXPECT_EQ(json["thermalState"], "nominal");
    EXPECT_EQ(json["memoryPressureLevel"], "normal");
    EXPECT_TRUE(json["battery"].is_null());
    EXPECT_TRUE(json["gpuUsage"].is_null());
    EXPECT_EQ(json["cpuHistory"].size(), 36u);
    EXPECT_EQ(json["plan"]["smcScope"], "full");
    EXPECT_EQ(json["plan"]["samplesBattery"], true);
    EXPECT_EQ(json["plan"]["storageEvery"], 15);
}

}  // namespace
}  // namespace corvane
