#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace corvane {

/// One process in one snapshot of the process table. Counters are cumulative.
struct ProcessSample {
    std::int32_t pid = 0;
    std::string name;
    /// User plus system CPU time, in the source's ticks (see nanosecondsPerTick).
    std::uint64_t cpuTicks = 0;
    std::uint64_t footprintBytes = 0;
    std::uint64_t diskRead = 0;
    std::uint64_t diskWrite = 0;
    /// When the process started, in the source's own clock (0 when it cannot say). Two samples
    /// of one pid with different start times are two processes: the pid was reused.
    std::uint64_t startTime = 0;

    friend bool operator==(const ProcessSample&, const ProcessSample&) = default;
};

/// Lists every process with its counters. Called on a background task, one call at a time;
/// touches no state of the caller.
class ProcessSource {
public:
    virtual ~ProcessSource() = default;
    /// Every process that could be inspected, in the system's listing order; empty when the
    /// process table cannot be listed.
    virtual std::vector<ProcessSample> sampleProcesses() = 0;
    /// Nanoseconds in one unit of `ProcessSample::cpuTicks`. Any thread.
    virtual double nanosecondsPerTick() const = 0;
};

}  // namespace corvane
