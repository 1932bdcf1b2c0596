#include "CorvaneAgent/ProcessMetrics.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace corvane {
namespace {

// 100 ticks per second, as USER_HZ is: 10 ticks in a second are 10 %.
constexpr double nanosecondsPerTick = 1e7;

ProcessSample sample(std::uint64_t ticks, std::uint64_t read, std::uint64_t write,
                     std::uint64_t startTime = 1000) {
    return {7, "worker", ticks, 4096, read, write, startTime};
}

ProcessMetric metric(double cpu, std::uint64_t readPerSecond, std::uint64_t writePerSecond) {
    return {7, "worker", cpu, 4096, readPerSecond, writePerSecond};
}

struct FiguresRow {
    const char* name;
    std::optional<ProcessSample> previous;
    ProcessSample current;
    std::optional<double> elapsedSeconds;
    ProcessMetric expected;
};

TEST(RankProcesses, FiguresOfOneProcess) {
    const FiguresRow rows[] = {
        {"0.5 s of CPU in 1 s", sample(100, 0, 0), sample(150, 0, 0), 1.0, metric(50, 0, 0)},
        {"rates truncated", sample(0, 0, 100), sample(0, 1001, 100), 0.3, metric(0, 3336, 0)},
        {"new process", std::nullopt, sample(500, 9000, 9000), 1.0, metric(0, 0, 0)},
        {"pid reused", sample(500, 5000, 9000), sample(100, 100, 50), 1.0, metric(0, 0, 0)},
        {"pid reused by a busier process", sample(100, 100, 50), sample(500, 5000, 9000, 2000), 1.0,
         metric(0, 0, 0)},
        {"no previous time", sample(100, 0, 0), sample(150, 1, 0), {}, metric(0, 1000, 0)},
        {"no time elapsed", sample(100, 0, 0), sample(101, 0, 2), 0.0, metric(1000, 0, 2000)},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ProcessSamplesByPid previous;
        if (row.previous) {
            previous.emplace(row.previous->pid, *row.previous);
        }
        const auto lists =
            rankProcesses({row.current}, previous, row.elapsedSeconds, nanosecondsPerTick);
        EXPECT_EQ(lists.topCPUProcesses, std::vector{row.expected});
        EXPECT_EQ(lists.diskReadPerSecond, row.expected.diskRead);
        EXPECT_EQ(lists.diskWritePerSecond, row.expected.diskWrite);
    }
}

std::vector<std::int32_t> pidsOf(const std::vector<ProcessMetric>& rows) {
    std::vector<std::int32_t> pids;
    for (const auto& row : rows) {
        pids.push_back(row.pid);
    }
    return pids;
}

struct ListsRow {
    const char* name;
    std::vector<ProcessSample> current;  // one second after a snapshot with every counter at 0
    std::vector<std::int32_t> cpuOrder;
    std::vector<std::int32_t> memoryOrder;
    std::vector<std::int32_t> diskOrder;
    std::uint64_t readPerSecond;
    std::uint64_t writePerSecond;
};

TEST(RankProcesses, ListsKeepFiveRowsWithTiesInSnapshotOrder) {
    // Snapshot order is not pid order; pid 40 splits its disk total between read and write.
    // Fields: pid, name, ticks, footprint, bytes read, bytes written.
    const std::vector<ProcessSample> six = {{30, "", 10, 5, 1, 0},   {10, "", 20, 5, 100, 0},
                                            {50, "", 10, 9, 0, 100}, {20, "", 0, 1, 2, 0},
                                            {60, "", 20, 5, 0, 3},   {40, "", 10, 5, 50, 50}};
    const std::vector<ProcessSample> four(six.begin(), six.begin() + 4);
    // Six processes give five rows and sums over all six; four give four rows.
    const ListsRow rows[] = {
        {"six", six, {10, 60, 30, 50, 40}, {50, 30, 10, 60, 40}, {10, 50, 40, 60, 20}, 153, 153},
        {"four", four, {10, 30, 50, 20}, {50, 30, 10, 20}, {10, 50, 20, 30}, 103, 100},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        ProcessSamplesByPid previous;
        for (const auto& process : row.current) {
            previous[process.pid] = {.pid = process.pid};
        }
        const auto lists = rankProcesses(row.current, previous, 1.0, nanosecondsPerTick);
        EXPECT_EQ(pidsOf(lists.topCPUProcesses), row.cpuOrder);
        EXPECT_EQ(pidsOf(lists.topMemoryProcesses), row.memoryOrder);
        EXPECT_EQ(pidsOf(lists.topDiskProcesses), row.diskOrder);
        EXPECT_EQ(lists.diskReadPerSecond, row.readPerSecond);
        EXPECT_EQ(lists.diskWritePerSecond, row.writePerSecond);
    }
}

}  // namespace
}  // namespace corvane
