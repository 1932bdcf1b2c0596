#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "CorvaneAgent/ProcessMetric.h"
#include "Platform/ProcessSource.h"

namespace corvane {

/// A process snapshot keyed by pid, as kept from one scan to the next.
using ProcessSamplesByPid = std::unordered_map<std::int32_t, ProcessSample>;

/// What one process snapshot publishes.
struct ProcessTopLists {
    /// How many rows each list keeps.
    static constexpr std::size_t length = 5;

    std::vector<ProcessMetric> topCPUProcesses;
    std::vector<ProcessMetric> topMemoryProcesses;
    std::vector<ProcessMetric> topDiskProcesses;
    /// Sums over every process, not only the listed ones; bytes per second.
    std::uint64_t diskReadPerSecond = 0;
    std::uint64_t diskWritePerSecond = 0;

    friend bool operator==(const ProcessTopLists&, const ProcessTopLists&) = default;
};

/// Compares `current` with `previous`, the snapshot taken `elapsedSeconds` earlier (absent when
/// that time is unknown: CPU then reads 0, and the disk rates are taken over the 1 ms floor).
/// Elapsed time is raised to at least 1 ms. A process missing from `previous` or there with
/// another start time (the pid was reused) gives 0 CPU and disk; a counter that went backwards
/// gives 0 for that figure. Each list is sorted by its
/// key, descending, with ties in snapshot order, and keeps `ProcessTopLists::length` rows.
[[nodiscard]] ProcessTopLists rankProcesses(const std::vector<ProcessSample>& current,
                                            const ProcessSamplesByPid& previous,
                                            std::optional<double> elapsedSeconds,
                                            double nanosecondsPerTick);

/// `samples` keyed by pid, to be the `previous` of the next ranking.
[[nodiscard]] ProcessSamplesByPid samplesByPid(std::vector<ProcessSample> samples);

}  // namespace corvane
