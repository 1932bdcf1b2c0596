#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SettingsStore.h"
#include "Platform/Linux/CPUTopology.h"
#include "Platform/Linux/LinuxSystemStatistics.h"
#include "tests/CorvaneAgent/FakeSystemStatistics.h"
#include "tests/support/ManualScheduler.h"

namespace corvane {
namespace {

using testing::FakeReadings;
using testing::FakeSystemStatistics;
using testing::ManualScheduler;

class FakeDisplayState final : public DisplayStateSource {
public:
    Subscription observe(std::function<void(DisplayEvent)> handler) override {
        *this->handler = std::move(handler);
        return Subscription([slot = this->handler] { *slot = nullptr; });
    }
    std::shared_ptr<std::function<void(DisplayEvent)>> handler =
        std::make_shared<std::function<void(DisplayEvent)>>();
};

class FakeStorage final : public StorageSource {
public:
    std::optional<StorageReading> readStorage() override {
        ++reads;
        return reading;
    }
    int reads = 0;
    std::optional<StorageReading> reading = StorageReading{1000, 250, "Data"};
};

class FakeSensors final : public SensorSource {
public:
    std::vector<TemperatureReading> temperatures(SamplingPlan::SMCScope scope) override {
        scopes.push_back(scope);
        return readings;
    }
    std::vector<FanReading> fans() override { return {{"F0Ac", 0, 1200.0}}; }
    std::vector<PowerReading> power() override { return {{PowerChannel::cpu, 4.5}}; }

    std::vector<SamplingPlan::SMCScope> scopes;
    std::vector<TemperatureReading> readings = {
        {"Tp01", SensorCategory::cpu, 48.0},
        {"TC0P", SensorCategory::other, 90.0},
        {"Tp02", SensorCategory::cpu, 61.5},
        {"TB0T", SensorCategory::battery, 31.0},
    };
};

class FakeProcesses final : public ProcessSource {
public:
    std::vector<ProcessSample> sampleProcesses() override {
        ++scans;
        return table;
    }
    double nanosecondsPerTick() const override { return 1e7; }  // 100 ticks per second

    int scans = 0;
    std::vector<ProcessSample> table = {{.pid = 7, .name = "busy", .cpuTicks = 1000}};
};

class FakeGPU final : public GPUStatisticsSource {
public:
    StatisticsDictionary performanceStatistics() override { return statistics; }
    StatisticsDictionary statistics = {{"GPU Core Utilization", 37}, {"gartUsedBytes", 4096}};
};

class SystemMonitorTest : public ::testing::Test {
protected:
    std::shared_ptr<SystemMonitor> makeMonitor(const std::set<MonitorSection>& open = {}) {
        auto display = std::make_unique<FakeDisplayState>();
        displayHandler = display->handler;
        MonitorServices services{
            .settings = settings,
            .runtime = scheduler.runtime(),
            .statistics = std::make_unique<FakeSystemStatistics>(readings),
            .processes = processes,
            .storage = storage,
            .gpu = std::move(gpu),
            .sensors = sensors,
            .battery =
                [this] {
                    ++batteryReads;
                    return std::optional(BatteryInfo{.chargePercent = 80});
                },
            .displayState = std::move(display),
            .coreTiers = tiers,
        };
        auto monitor = SystemMonitor::create(std::move(services));
        for (MonitorSection section : open) {
            monitor->beginDetailedSampling(section);
        }
        monitor->start();
        return monitor;
    }

    void sendDisplayEvent(DisplayEvent event) { (*displayHandler)(event); }

    ManualScheduler scheduler;
    InMemorySettingsStore settings;
    FakeReadings readings;
    std::shared_ptr<FakeStorage> storage = std::make_shared<FakeStorage>();
    std::shared_ptr<FakeSensors> sensors;
    std::shared_ptr<FakeProcesses> processes;
    std::unique_ptr<FakeGPU> gpu;
    int batteryReads = 0;
    std::vector<CoreTier> tiers;
    std::shared_ptr<std::function<void(DisplayEvent)>> displayHandler;
};

TEST_F(SystemMonitorTest, FirstRefreshIsABaselineAndTheSecondShowsUsage) {
    readings.host = HostCPULoad{100, 100, 100, 100};
    readings.processors = {{10, 10, 10, 10}, {20, 20, 20, 20}, {30, 30, 30, 30}};
    auto monitor = makeMonitor();
    EXPECT_EQ(monitor->fields().cpuUsage, 0.0);
    EXPECT_EQ(monitor->fields().coreUsages, std::vector<double>(3, 0.0));

    readings.host = HostCPULoad{130, 120, 140, 110};  // +30 user, +20 system, +40 idle, +10 nice
    readings.processors = {{20, 10, 10, 10}, {20, 20, 30, 20}, {30, 30, 30, 30}};
    scheduler.advance(1.0);
    EXPECT_DOUBLE_EQ(monitor->fields().userCPUUsage, 0.4);
    EXPECT_DOUBLE_EQ(monitor->fields().systemCPUUsage, 0.2);
    EXPECT_DOUBLE_EQ(monitor->fields().cpuUsage, 0.6);
    EXPECT_EQ(monitor->fields().coreUsages, (std::vector<double>{1.0, 0.0, 0.0}));

    // No tick elapsed: the previous usage stays instead of dropping to 0.
    scheduler.advance(1.0);
    EXPECT_DOUBLE_EQ(monitor->fields().cpuUsage, 0.6);
}

TEST_F(SystemMonitorTest, ChangedCPUCountShowsZerosForOneRefresh) {
    readings.processors = {{0, 0, 0, 0}, {0, 0, 0, 0}};
    auto monitor = makeMonitor();
    readings.processors = {{10, 0, 0, 0}, {10, 0, 0, 0}};
    scheduler.advance(1.0);
    EXPECT_EQ(monitor->fields().coreUsages, (std::vector<double>{1.0, 1.0}));

    readings.processors = {{20, 0, 0, 0}};  // a CPU went offline
    scheduler.advance(1.0);
    EXPECT_EQ(monitor->fields().coreUsages, std::vector<double>{0.0});
    readings.processors = {{20, 0, 10, 0}};
    scheduler.advance(1.0);
    EXPECT_EQ(monitor->fields().coreUsages, std::vector<double>{0.0});
    readings.processors = {{30, 0, 10, 0}};
    scheduler.advance(1.0);
    EXPECT_EQ(monitor->fields().coreUsages, std::vector<double>{1.0});
}

TEST_F(SystemMonitorTest, PerformanceCoresFollowTheCPUNumbersAsCPUsGoOffline) {
    // The big cores of a big.LITTLE board are its high-numbered CPUs.
    tiers = {{"Performance", 3, {4, 5, 6}}, {"Efficiency", 4, {0, 1, 2, 3}}};
    readings.processors = std::vector<ProcessorLoad>(7);
    readings.processorNumbers = {0, 1, 2, 3, 4, 5, 6};
    auto monitor = makeMonitor();
    EXPECT_EQ(monitor->performanceCores(),
              (std::vector<bool>{false, false, false, false, true, true, true}));

    readings.processors = std::vector<ProcessorLoad>(6);
    readings.processorNumbers = {0, 1, 3, 4, 5, 6};  // cpu2 went offline
    scheduler.advance(1.0);
    EXPECT_EQ(monitor->performanceCores(),
              (std::vector<bool>{false, false, false, true, true, true}));
}

TEST_F(SystemMonitorTest, PagingRatesUseTheClampedElapsedTime) {
    readings.vm = VMStatistics{.pageInBytes = 1'000'000, .pageOutBytes = 500'000};
    auto monitor = makeMonitor();
    EXPECT_EQ(monitor->fields().pageInsPerSecond, 0u);

    // Two refreshes at the same instant count as a millisecond apart.
    readings.vm->pageInBytes += 16384;
    monitor->refresh();
    EXPECT_EQ(monitor->fields().pageInsPerSecond, 16'384'000u);
    EXPECT_EQ(monitor->fields().pageOutsPerSecond, 0u);

    // A counter reset zeroes its own direction only; a long gap counts as a minute.
    monitor->stopTimer();
    scheduler.advance(600.0);
    readings.vm->pageInBytes = 0;
    readings.vm->pageOutBytes += 6000;
    monitor->refresh();
    EXPECT_EQ(monitor->fields().pageInsPerSecond, 0u);
    EXPECT_EQ(monitor->fields().pageOutsPerSecond, 100u);
}

TEST_F(SystemMonitorTest, MemoryCompositionAndUsedMemoryCappedAtTotal) {
    readings.physicalMemory = 1000;
    readings.vm = VMStatistics{
        .wiredBytes = 100, .compressedBytes = 50, .activeBytes = 300, .inactiveBytes = 200};
    readings.pressure = 2;
    auto monitor = makeMonitor();
    EXPECT_EQ(monitor->fields().usedMemory, 450u);
    EXPECT_EQ(monitor->fields().cacheMemory, 200u);
    EXPECT_EQ(monitor->fields().memoryPressureLevel, MemoryPressureLevel::warning);
    EXPECT_DOUBLE_EQ(monitor->memoryUsage(), 0.45);
    EXPECT_DOUBLE_EQ(monitor->memoryPressure(), 0.15);

    readings.vm->activeBytes = 5000;
    scheduler.advance(1.0);
    EXPECT_EQ(monitor->fields().usedMemory, 1000u);
    EXPECT_DOUBLE_EQ(monitor->memoryUsage(), 1.0);
}

TEST_F(SystemMonitorTest, FailedReadsLeaveFieldsAsTheyWere) {
    readings.host = HostCPULoad{0, 0, 0, 0};
    readings.vm = VMStatistics{.wiredBytes = 100, .activeBytes = 100};
    readings.swap = SwapUsage{.totalBytes = 1000, .usedBytes = 10};
    readings.pressure = 4;
    auto monitor = makeMonitor();
    readings.host = HostCPULoad{10, 10, 0, 0};
    scheduler.advance(1.0);
    const MonitorFields before = monitor->fields();

    readings.host.reset();
    readings.processors.clear();
    readings.vm.reset();
    readings.swap.reset();
    readings.loadAverages.reset();
    readings.uptime.reset();
    readings.pressure = 1;  // must not be read while the memory statistics fail
    scheduler.advance(1.0);
    const MonitorFields& after = monitor->fields();
    EXPECT_EQ(after.cpuUsage, before.cpuUsage);
    EXPECT_EQ(after.coreUsages, before.coreUsages);
    EXPECT_EQ(after.usedMemory, before.usedMemory);
    EXPECT_EQ(after.memoryPressureLevel, MemoryPressureLevel::critical);
    EXPECT_EQ(after.swapTotal, 1000u);
    EXPECT_EQ(after.loadAverages, before.loadAverages);
    EXPECT_EQ(after.uptime, before.uptime);
    EXPECT_EQ(monitor->refreshCount(), 3);
}

TEST_F(SystemMonitorTest, HistoriesKeepTheirLengthAndLoadHistoriesStartFlat) {
    readings.loadAverages = std::array<double, 3>{2.0, 1.5, 1.0};
    auto monitor = makeMonitor();
    EXPECT_EQ(monitor->fields().loadOneHistory, std::vector<double>(60, 2.0));
    EXPECT_EQ(monitor->fields().loadFifteenHistory, std::vector<double>(60, 1.0));

    readings.loadAverages = std::array<double, 3>{3.0, 1.5, 1.0};
    readings.host = HostCPULoad{0, 0, 0, 0};
    scheduler.advance(1.0);
    readings.host = HostCPULoad{50, 0, 50, 0};
    scheduler.advance(1.0);
    const auto& loadOne = monitor->fields().loadOneHistory;
    ASSERT_EQ(loadOne.size(), 60u);
    EXPECT_EQ(loadOne.front(), 2.0);
    EXPECT_EQ(loadOne.back(), 3.0);
    EXPECT_EQ(monitor->fields().cpuHistory.back(), 0.5);

    scheduler.advance(60.0);
    EXPECT_EQ(monitor->fields().cpuHistory, std::vector<double>(36, 0.5));
    EXPECT_EQ(monitor->fields().userCPUHistory.size(), 36u);
    EXPECT_EQ(monitor->fields().loadOneHistory, std::vector<double>(60, 3.0));
}

TEST_F(SystemMonitorTest, ObserversHearChangesOnlyAndHistoriesAlways) {
    readings.host = HostCPULoad{0, 0, 0, 0};
    auto monitor = makeMonitor();
    int usageChanges = 0;
    int historyChanges = 0;
    int swapChanges = 0;
    auto usage = monitor->observe(MonitorField::cpuUsage, [&] {
        ++usageChanges;
        // Told about the total, an observer already sees the split of the same sample.
        EXPECT_DOUBLE_EQ(monitor->fields().userCPUUsage + monitor->fields().systemCPUUsage,
                         monitor->fields().cpuUsage);
    });
    auto history = monitor->observe(MonitorField::cpuHistory, [&] { ++historyChanges; });
    auto swap = monitor->observe(MonitorField::swapUsed, [&] { ++swapChanges; });

    readings.host = HostCPULoad{10, 0, 10, 0};
    scheduler.advance(1.0);
    readings.host = HostCPULoad{20, 0, 20, 0};  // the same half-busy split again
    scheduler.advance(1.0);
    EXPECT_EQ(usageChanges, 1);
    EXPECT_EQ(historyChanges, 2);
    EXPECT_EQ(swapChanges, 0);

    usage.reset();
    readings.host = HostCPULoad{40, 0, 20, 0};
    scheduler.advance(1.0);
    EXPECT_EQ(usageChanges, 1);
}

TEST_F(SystemMonitorTest, TimerUsesTheConfiguredIntervalWithTwentyPercentTolerance) {
    struct Row {
        const char* name;
        SettingValue stored;
        double interval;
    };
    const Row rows[] = {
        {"nothing stored", nullptr, 1.0}, {"two seconds", 2.0, 2.0},    {"zero", 0.0, 1.0},
        {"negative", -3.0, 1.0},          {"numeric text", "0.5", 0.5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        settings.set("refreshInterval", row.stored);
        auto monitor = makeMonitor();
        auto timers = scheduler.activeTimers();
        ASSERT_EQ(timers.size(), 1u);
        EXPECT_DOUBLE_EQ(timers[0].interval, row.interval);
        EXPECT_DOUBLE_EQ(timers[0].tolerance, 0.2 * row.interval);
    }
}

TEST_F(SystemMonitorTest, ApplyIntervalRestartsOnlyOnChangeAndNotWhilePaused) {
    auto monitor = makeMonitor();
    const std::size_t started = scheduler.timersStarted();
    monitor->applyInterval();
    EXPECT_EQ(scheduler.timersStarted(), started);

    settings.set("refreshInterval", 2.0);
    monitor->applyInterval();
    EXPECT_EQ(scheduler.timersStarted(), started + 1);
    ASSERT_EQ(scheduler.activeTimers().size(), 1u);
    EXPECT_EQ(scheduler.activeTimers()[0].interval, 2.0);
    const auto refreshes = monitor->refreshCount();
    scheduler.advance(4.0);
    EXPECT_EQ(monitor->refreshCount(), refreshes + 2);

    sendDisplayEvent(DisplayEvent::screensDidSleep);
    settings.set("refreshInterval", 3.0);
    monitor->applyInterval();
    EXPECT_TRUE(scheduler.activeTimers().empty());
}

TEST_F(SystemMonitorTest, SleepStopsSamplingAndWakeRefreshesAtOnce) {
    auto monitor = makeMonitor();
    scheduler.advance(2.0);
    EXPECT_EQ(monitor->refreshCount(), 3);

    // A wake with no sleep before it changes nothing.
    sendDisplayEvent(DisplayEvent::screensDidWake);
    EXPECT_EQ(monitor->refreshCount(), 3);
    EXPECT_EQ(scheduler.activeTimers().size(), 1u);

    sendDisplayEvent(DisplayEvent::sessionDidResignActive);
    scheduler.advance(10.0);
    EXPECT_EQ(monitor->refreshCount(), 3);

    sendDisplayEvent(DisplayEvent::sessionDidBecomeActive);
    EXPECT_EQ(monitor->refreshCount(), 4);
    EXPECT_EQ(scheduler.activeTimers().size(), 1u);
    scheduler.advance(1.0);
    EXPECT_EQ(monitor->refreshCount(), 5);
}

TEST_F(SystemMonitorTest, StorageEveryFifteenthRefreshOrEveryThirdWithItsPanelOpen) {
    auto monitor = makeMonitor();
    scheduler.settle();
    EXPECT_EQ(storage->reads, 1);
    EXPECT_EQ(monitor->fields().totalStorage, 1000);
    EXPECT_EQ(monitor->fields().volumeName, "Data");
    EXPECT_DOUBLE_EQ(monitor->storageUsage(), 0.75);

    for (int tick = 1; tick < 15; ++tick) {
        scheduler.advance(1.0);
        scheduler.settle();
    }
    EXPECT_EQ(storage->reads, 1);
    scheduler.advance(1.0);  // refresh number 15
    scheduler.settle();
    EXPECT_EQ(storage->reads, 2);

    monitor->beginDetailedSampling(MonitorSection::storage);
    scheduler.advance(3.0);  // refreshes 16, 17, 18
    scheduler.settle();
    EXPECT_EQ(storage->reads, 3);
    EXPECT_EQ(monitor->lastRefreshPlan()->storageEvery, 3);
}

TEST_F(SystemMonitorTest, AtMostOneStorageTaskRuns) {
    auto monitor = makeMonitor({MonitorSection::storage});
    // The first task has not run yet when the next refreshes come due.
    scheduler.advance(6.0);
    EXPECT_EQ(scheduler.pendingBackgroundTasks(), 1u);
    scheduler.settle();
    EXPECT_EQ(storage->reads, 1);
}

TEST_F(SystemMonitorTest, PreparingTheStoragePanelWaitsForTheRunningTask) {
    auto monitor = makeMonitor();
    ASSERT_EQ(scheduler.pendingBackgroundTasks(), 1u);  // started by the first refresh
    bool prepared = false;
    monitor->prepareDetailedSampling(MonitorSection::storage, [&] { prepared = true; });
    EXPECT_TRUE(monitor->openPopovers().contains(MonitorSection::storage));
    EXPECT_EQ(scheduler.pendingBackgroundTasks(), 1u);
    EXPECT_FALSE(prepared);
    scheduler.settle();
    EXPECT_TRUE(prepared);
    EXPECT_EQ(storage->reads, 1);

    // With no task running, preparing starts one and waits for its result.
    storage->reading = StorageReading{2000, 500, ""};
    prepared = false;
    monitor->prepareDetailedSampling(MonitorSection::storage, [&] {
        prepared = true;
        EXPECT_EQ(monitor->fields().totalStorage, 2000);
    });
    EXPECT_FALSE(prepared);
    scheduler.settle();
    EXPECT_TRUE(prepared);
    EXPECT_EQ(monitor->fields().volumeName, "File System");
}

TEST_F(SystemMonitorTest, ResultOfATaskThatOutlivesItsMonitorIsDropped) {
    auto monitor = makeMonitor();
    int refreshesSeen = 0;
    monitor->setOnRefresh([&] { ++refreshesSeen; });
    ASSERT_EQ(scheduler.pendingBackgroundTasks(), 1u);
    monitor.reset();
    scheduler.settle();  // the task runs and posts to a monitor that is gone
    scheduler.advance(5.0);
    EXPECT_EQ(storage->reads, 1);
    EXPECT_EQ(refreshesSeen, 0);
}

TEST_F(SystemMonitorTest, BackgroundWorkWaitEndsAfterTheLastResult) {
    auto monitor = makeMonitor();
    bool finished = false;
    monitor->whenBackgroundWorkFinished([&] { finished = true; });
    EXPECT_FALSE(finished);
    scheduler.settle();
    EXPECT_TRUE(finished);
    EXPECT_EQ(monitor->fields().totalStorage, 1000);
}

TEST_F(SystemMonitorTest, FirstProcessScanAfterSamplingWasOffShowsNoRates) {
    struct Row {
        const char* name;
        std::function<void()> stop;
        std::function<void()> resume;
    };
    const auto showProcessMeters = [this](bool shown) {
        for (const char* key : {"showCPUItem", "showMemoryItem", "showStorageItem"}) {
            settings.set(key, shown ? SettingValue() : SettingValue(false));
        }
    };
    const Row rows[] = {
        {"display slept", [&] { sendDisplayEvent(DisplayEvent::screensDidSleep); },
         [&] { sendDisplayEvent(DisplayEvent::screensDidWake); }},
        // The scan's result arrives after the pause began; it must not become the baseline.
        {"display slept while a scan ran",
         [&] {
             scheduler.advance(3.0);
             ASSERT_EQ(scheduler.pendingBackgroundTasks(), 1u);
             sendDisplayEvent(DisplayEvent::screensDidSleep);
             scheduler.settle();
         },
         [&] { sendDisplayEvent(DisplayEvent::screensDidWake); }},
        {"no meter showed processes", [&] { showProcessMeters(false); },
         [&] { showProcessMeters(true); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        processes = std::make_shared<FakeProcesses>();
        auto monitor = makeMonitor();
        auto& ticks = processes->table[0].cpuTicks;
        // Refreshes until the next scan; answers how many that took.
        const auto scanAgain = [&] {
            const int scans = processes->scans;
            int refreshes = 0;
            while (refreshes < 3 && processes->scans == scans) {
                scheduler.advance(1.0);
                scheduler.settle();
                ++refreshes;
            }
            EXPECT_EQ(processes->scans, scans + 1);
            return refreshes;
        };
        scheduler.settle();
        ASSERT_EQ(monitor->fields().topCPUProcesses.size(), 1u);
        EXPECT_EQ(monitor->fields().topCPUProcesses[0].cpu, 0.0) << "no earlier scan to compare";
        ticks += 150;  // 1.5 s of CPU time over the 3 s to the next scan
        EXPECT_EQ(scanAgain(), 3) << "processes are scanned every third refresh";
        ASSERT_DOUBLE_EQ(monitor->fields().topCPUProcesses[0].cpu, 50.0);

        row.stop();
        const int scansBeforeResuming = processes->scans;
        ticks += 3000;
        scheduler.advance(30.0);
        scheduler.settle();
        EXPECT_EQ(processes->scans, scansBeforeResuming) << "no scan while sampling is off";
        row.resume();
        scheduler.settle();
        if (processes->scans == scansBeforeResuming) {
            scanAgain();
        }
        EXPECT_EQ(monitor->fields().topCPUProcesses[0].cpu, 0.0) << "nothing recent to compare";
        ticks += 150;
        scanAgain();
        EXPECT_DOUBLE_EQ(monitor->fields().topCPUProcesses[0].cpu, 50.0);
    }
}

TEST_F(SystemMonitorTest, GPUIsReadOnlyForTheCPUAndSensorsPanels) {
    gpu = std::make_unique<FakeGPU>();
    auto monitor = makeMonitor();
    EXPECT_EQ(monitor->fields().gpuUsage, std::nullopt);
    monitor->prepareDetailedSampling(MonitorSection::cpu, [] {});
    EXPECT_EQ(monitor->fields().gpuUsage, 0.37);
    EXPECT_EQ(monitor->fields().gpuAllocatedMemory, 4096u);
}

TEST_F(SystemMonitorTest, SensorPassGroupsReadingsByCategory) {
    sensors = std::make_shared<FakeSensors>();
    auto monitor = makeMonitor();
    int cpuTemperatureChanges = 0;
    auto token = monitor->observe(MonitorField::cpuTemperature, [&] { ++cpuTemperatureChanges; });
    scheduler.settle();
    // Other readings stay out of the groups; the hottest reading of a category stands for it.
    EXPECT_EQ(
        monitor->fields().sensorGroups,
        (std::vector<SensorGroup>{{SensorCategory::cpu, 61.5}, {SensorCategory::battery, 31.0}}));
    EXPECT_EQ(monitor->cpuTemperature(), 61.5);
    EXPECT_EQ(monitor->gpuTemperature(), std::nullopt);
    EXPECT_EQ(monitor->hottestCelsius(), 61.5);
    EXPECT_EQ(monitor->cpuWatts(), 4.5);
    EXPECT_EQ(monitor->fields().battery, std::nullopt) << "the plan did not ask for the battery";

    scheduler.advance(3.0);  // the next pass brings the same readings
    scheduler.settle();
    EXPECT_EQ(sensors->scopes.size(), 2u);
    EXPECT_EQ(cpuTemperatureChanges, 1);
}

TEST_F(SystemMonitorTest, RunningPassThatCoversThePlanIsAwaitedNotDoubled) {
    sensors = std::make_shared<FakeSensors>();
    auto monitor = makeMonitor();  // the first refresh started a menu-bar pass
    bool cpuReady = false;
    bool sensorsReady = false;
    monitor->prepareDetailedSampling(MonitorSection::cpu, [&] { cpuReady = true; });
    monitor->prepareDetailedSampling(MonitorSection::sensors, [&] {
        sensorsReady = true;
        EXPECT_TRUE(monitor->fields().battery.has_value());
    });
    EXPECT_FALSE(cpuReady);
    scheduler.runBackgroundTasks();
    scheduler.drainMainQueue();
    // The running pass covered the CPU panel; the sensors panel needs a full pass with battery.
    EXPECT_TRUE(cpuReady);
    EXPECT_FALSE(sensorsReady);
    scheduler.settle();
    EXPECT_TRUE(sensorsReady);
    EXPECT_EQ(sensors->scopes, (std::vector<SamplingPlan::SMCScope>{SamplingPlan::SMCScope::menuBar,
                                                                    SamplingPlan::SMCScope::full}));
    EXPECT_EQ(batteryReads, 1);
}

TEST_F(SystemMonitorTest, ConstructionReadsMachineFactsWithFallbacks) {
    readings.brand.reset();
    readings.thermal.reset();
    readings.physicalMemory = 4096;
    auto monitor = makeMonitor();
    EXPECT_EQ(monitor->fields().chipName, "Processor");
    EXPECT_EQ(monitor->fields().totalMemory, 4096u);
    EXPECT_EQ(monitor->fields().thermalState, ThermalState::unknown);
    EXPECT_EQ(monitor->thermalStateLabel(), "Unknown");

    readings.thermal = ThermalState::serious;
    scheduler.advance(1.0);
    EXPECT_EQ(monitor->thermalStateLabel(), "High");
}

TEST_F(SystemMonitorTest, CountersOfAFixtureMachineThatWrapOrGoBackwardsBetweenRefreshes) {
    // The same machine one refresh apart: the monitor reads `before`, then `after` in its place.
    namespace fs = std::filesystem;
    const fs::path fixtures = CORVANE_FIXTURES;
    const fs::path proc = fs::temp_directory_path() / ("corvane-wrap-" + std::to_string(getpid()));
    fs::create_directories(proc);
    fs::copy_file(fixtures / "wrap-before/proc/stat", proc / "stat");

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

TEST_F(SystemMonitorTest, BigCoresOfAnArmBoardAreItsHighNumberedCPUs) {
    // cpu0-3 are the little cores, cpu4-6 the big ones; cpu7 (big) is offline, so /proc/stat
    // has seven lines and the tiers count three big cores.
    const std::filesystem::path tree =
        std::filesystem::path(CORVANE_FIXTURES) / "arm-biglittle-board";
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
