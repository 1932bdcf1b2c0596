// The refresh cycle over a long run: every pass of the monitor (processes, sensors, storage)
// over a fixture machine, panels opened and closed, observers coming and going. Memory must
// stay flat once warm, counted in allocations (a leak of a few bytes per refresh never shows
// in RSS over a test's length), histories must keep their lengths, and no observer may be told
// anything after its subscription ended. CORVANE_SOAK_REFRESHES sets the length (`make soak`).

#include <gtest/gtest.h>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <variant>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/Headless/MachineSources.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SettingsStore.h"
#include "Foundation/NumberParsing.h"
#include "tests/support/ManualScheduler.h"

namespace {

// Every allocation of this program, counted: live blocks are what a leak leaves behind.
std::atomic<long long> allocations = 0;
std::atomic<long long> releases = 0;

}  // namespace

void* operator new(std::size_t size) {
    allocations.fetch_add(1, std::memory_order_relaxed);
    if (void* block = std::malloc(size == 0 ? 1 : size)) {
        return block;
    }
    throw std::bad_alloc();
}

// GCC takes the free() below for one that does not match its operator new, though this file
// replaces both with malloc and free.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmismatched-new-delete"
#endif

void operator delete(void* block) noexcept {
    if (block != nullptr) {
        releases.fetch_add(1, std::memory_order_relaxed);
        std::free(block);
    }
}

void operator delete(void* block, std::size_t) noexcept {
    operator delete(block);
}

namespace corvane {
namespace {

namespace fs = std::filesystem;

long long liveBlocks() {
    return allocations.load() - releases.load();
}

int refreshCount() {
    const char* text = std::getenv("CORVANE_SOAK_REFRESHES");
    const auto count = text ? parseNumber<int>(text) : std::nullopt;
    return count && *count > 0 ? *count : 3000;
}

// A laptop with hybrid cores, sensors, a battery and storage, with the process table of
// another fixture added, in a folder of its own.
fs::path soakMachine() {
    const fs::path fixtures = CORVANE_FIXTURES;
    const fs::path root =
        fs::temp_directory_path() / ("corvane-soak-" + std::to_string(::getpid()));
    fs::remove_all(root);
    fs::copy(fixtures / "intel-laptop-hybrid", root, fs::copy_options::recursive);
    for (const auto& entry : fs::directory_iterator(fixtures / "processes" / "proc")) {
        if (entry.is_directory()) {
            fs::copy(entry.path(), root / "proc" / entry.path().filename(),
                     fs::copy_options::recursive);
        }
    }
    return root;
}

TEST(Soak, MemoryStaysFlatAndHistoriesKeepTheirLengthOverManyRefreshes) {
    const fs::path machine = soakMachine();
    testing::ManualScheduler scheduler;
    InMemorySettingsStore settings;
    AgentOptions options;
    options.procfs = machine / "proc";
    options.sysfs = machine / "sys";
    auto sensors = chooseSensorSource(options, nullptr);
    ASSERT_TRUE(std::holds_alternative<std::shared_ptr<SensorSource>>(sensors));
    auto monitor = SystemMonitor::create(
        machineServices(options, settings, scheduler.runtime(),
                        std::get<std::shared_ptr<SensorSource>>(std::move(sensors))));
    monitor->start();

    const int refreshes = refreshCount();
    const int warmUp = std::min(1000, refreshes / 3);
    long long toldAfterEnd = 0;
    long long told = 0;
    long long warmBlocks = 0;
    constexpr MonitorSection sections[] = {MonitorSection::cpu, MonitorSection::memory,
                                           MonitorSection::storage, MonitorSection::sensors};
    for (int refresh = 1; refresh <= refreshes; ++refresh) {
        // A panel opens every 50 refreshes and closes 20 later, each section in turn, and an
        // observer lives for the same span.
        const MonitorSection section = sections[(refresh / 50) % 4];
        auto ended = std::make_shared<bool>(false);
        if (refresh % 50 == 0) {
            monitor->beginDetailedSampling(section);
        }
        {
            Subscription subscription =
                monitor->observe(MonitorField::cpuHistory, [&told, &toldAfterEnd, ended] {
                    ++told;
                    toldAfterEnd += *ended ? 1 : 0;
                });
            scheduler.advance(1.0);
            scheduler.settle();
        }
        *ended = true;
        if (refresh % 50 == 20) {
            monitor->endDetailedSampling(sections[(refresh / 50) % 4]);
        }
        scheduler.advance(0.0);
        scheduler.settle();

        const MonitorFields& fields = monitor->fields();
        ASSERT_EQ(fields.cpuHistory.size(), cpuHistoryLength) << "at refresh " << refresh;
        ASSERT_EQ(fields.loadOneHistory.size(), loadHistoryLength) << "at refresh " << refresh;
        ASSERT_EQ(fields.userCPUHistory.size(), cpuHistoryLength);
        if (refresh == warmUp) {
            warmBlocks = liveBlocks();
        }
    }
    const long long endBlocks = liveBlocks();
    std::cout << "soak: " << refreshes << " refreshes; live allocations " << warmBlocks << " after "
              << warmUp << " refreshes, " << endBlocks << " at the end; " << allocations.load()
              << " allocations in all\n";
    // Every pass ran over the fixture machine, not only the cheap ones.
    const MonitorFields& fields = monitor->fields();
    EXPECT_FALSE(fields.topMemoryProcesses.empty());
    EXPECT_FALSE(fields.temperatures.empty());
    EXPECT_GT(fields.totalStorage, 0);
    EXPECT_GT(told, 0);
    EXPECT_EQ(toldAfterEnd, 0);
    // The caches reach their size during the warm-up; what is left is a leak. A few blocks of
    // slack for a vector that doubles once more late in the run.
    EXPECT_LE(endBlocks - warmBlocks, 16) << "blocks still held: " << endBlocks - warmBlocks;
    monitor.reset();
    fs::remove_all(machine);
}

}  // namespace
}  // namespace corvane
