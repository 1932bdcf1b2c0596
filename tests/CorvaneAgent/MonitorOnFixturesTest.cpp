#include <gtest/gtest.h>

#include <filesystem>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SettingsStore.h"
#include "Platform/Linux/LinuxSystemStatistics.h"
#include "tests/support/ManualScheduler.h"

namespace corvane {
namespace {

const std::filesystem::path fixtures = CORVANE_FIXTURES;

/// The same machine one refresh apart: answers from `before` until told to move on.
class TwoMomentStatistics final : public SystemStatistics {
public:
    TwoMomentStatistics(const std::string& before, const std::string& after)
        : before(fixtures / before / "proc"), after(fixtures / after / "proc") {}

    void moveOn() { current = &after; }

    void readCPULoad(CPULoadSample& sample) override { current->readCPULoad(sample); }
    std::optional<std::array<double, 3>> loadAverages() override {
        return current->loadAverages();
    }
    MemorySample readMemory() override { return current->readMemory(); }
    std::optional<std::int32_t> memoryPressureLevel() override {
        return current->memoryPressureLevel();
    }
    std::optional<double> uptimeSeconds() override { return current->uptimeSeconds(); }
    std::optional<std::uint64_t> physicalMemoryBytes() override {
        return current->physicalMemoryBytes();
    }
    std::optional<std::string> processorBrand() override { return current->processorBrand(); }
    std::optional<ThermalState> thermalState() override { return current->thermalState(); }

private:
    LinuxSystemStatistics before;
    LinuxSystemStatistics after;
    LinuxSystemStatistics* current = &before;
};

TEST(MonitorOnFixtures, CountersThatWrapOrGoBackwardsBetweenRefreshes) {
    testing::ManualScheduler scheduler;
    InMemorySettingsStore settings;
    auto statistics = std::make_unique<TwoMomentStatistics>("wrap-before", "wrap-after");
    TwoMomentStatistics& moments = *statistics;
    auto monitor = SystemMonitor::create({
        .settings = settings,
        .runtime = scheduler.runtime(),
        .statistics = std::move(statistics),
    });
    monitor->start();
    moments.moveOn();
    scheduler.advance(1.0);

    // Between the two captures the machine's user and system sums cross 2^32 ticks:
    // +800 user, +500 system, +1010 idle.
    EXPECT_NEAR(monitor->fields().userCPUUsage, 800.0 / 2310.0, 1e-12);
    EXPECT_NEAR(monitor->fields().systemCPUUsage, 500.0 / 2310.0, 1e-12);
    // cpu0 moved 5660 ticks of which 5010 idle; cpu1's idle and total went backwards.
    ASSERT_EQ(monitor->fields().coreUsages.size(), 2u);
    EXPECT_NEAR(monitor->fields().coreUsages[0], 1.0 - 5010.0 / 5660.0, 1e-12);
    EXPECT_EQ(monitor->fields().coreUsages[1], 0.0);
}

TEST(MonitorOnFixtures, MemoryOfACompressingLaptop) {
    testing::ManualScheduler scheduler;
    InMemorySettingsStore settings;
    const auto machine = fixtures / "laptop-zram-zswap-x86_64";
    auto monitor = SystemMonitor::create({
        .settings = settings,
        .runtime = scheduler.runtime(),
        .statistics =
            std::make_unique<LinuxSystemStatistics>(machine / "proc", machine / "sys"),
    });
    monitor->start();
    const MonitorFields& fields = monitor->fields();
    EXPECT_EQ(fields.usedMemory,
              fields.wiredMemory + fields.compressedMemory + fields.activeMemory);
    EXPECT_GT(fields.compressedMemory, 0u);
    EXPECT_GT(fields.swapUsed, 0u);
    EXPECT_EQ(fields.memoryPressureLevel, MemoryPressureLevel::warning);
    EXPECT_EQ(fields.coreUsages.size(), 8u);
    EXPECT_LT(monitor->memoryUsage(), 1.0);
}

}  // namespace
}  // namespace corvane
