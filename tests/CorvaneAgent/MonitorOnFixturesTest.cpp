#include <gtest/gtest.h>

#include <unistd.h>

#include <filesystem>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SettingsStore.h"
#include "Platform/Linux/CpuTopology.h"
#include "Platform/Linux/LinuxSystemStatistics.h"
#include "tests/support/ManualScheduler.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

TEST(MonitorOnFixtures, CountersThatWrapOrGoBackwardsBetweenRefreshes) {
    // The same machine one refresh apart: the monitor reads `before`, then `after` in its place.
    const fs::path fixtures = CORVANE_FIXTURES;
    const fs::path proc = fs::temp_directory_path() / ("corvane-wrap-" + std::to_string(getpid()));
    fs::create_directories(proc);
    fs::copy_file(fixtures / "wrap-before/proc/stat", proc / "stat");

    testing::ManualScheduler scheduler;
    InMemorySettingsStore settings;
    auto monitor = SystemMonitor::create({
        .settings = settings,
        .runtime = scheduler.runtime(),
        .statistics = std::make_unique<LinuxSystemStatistics>(proc, proc),
    });
    monitor->start();
    fs::copy_file(fixtures / "wrap-after/proc/stat", proc / "stat",
                  fs::copy_options::overwrite_existing);
    scheduler.advance(1.0);
    fs::remove_all(proc);

    // Between the two captures the machine's user and system sums cross 2^32 ticks:
    // +800 user, +500 system, +1010 idle.
    EXPECT_NEAR(monitor->fields().userCPUUsage, 800.0 / 2310.0, 1e-12);
    EXPECT_NEAR(monitor->fields().systemCPUUsage, 500.0 / 2310.0, 1e-12);
    // cpu0 moved 5660 ticks of which 5010 idle; cpu1's idle and total went backwards.
    ASSERT_EQ(monitor->fields().coreUsages.size(), 2u);
    EXPECT_NEAR(monitor->fields().coreUsages[0], 1.0 - 5010.0 / 5660.0, 1e-12);
    EXPECT_EQ(monitor->fields().coreUsages[1], 0.0);
}

TEST(MonitorOnFixtures, BigCoresOfAnArmBoardAreItsHighNumberedCPUs) {
    // cpu0-3 are the little cores, cpu4-6 the big ones; cpu7 (big) is offline, so /proc/stat
    // has seven lines and the tiers count three big cores.
    const fs::path tree = fs::path(CORVANE_FIXTURES) / "arm-biglittle-board";
    testing::ManualScheduler scheduler;
    InMemorySettingsStore settings;
    auto monitor = SystemMonitor::create({
        .settings = settings,
        .runtime = scheduler.runtime(),
        .statistics = std::make_unique<LinuxSystemStatistics>(tree / "proc", tree / "sys"),
        .coreTiers = coreTiersFrom(readPerformanceLevels(tree / "sys")),
    });
    monitor->start();
    EXPECT_EQ(monitor->performanceCoreCount(), 3);
    EXPECT_EQ(monitor->performanceCores(),
              (std::vector<bool>{false, false, false, false, true, true, true}));
}

}  // namespace
}  // namespace corvane
