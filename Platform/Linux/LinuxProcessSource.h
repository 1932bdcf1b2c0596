#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "Platform/ProcessSource.h"

namespace corvane {

/// The process table of a Linux machine, read from procfs under the given root (the real one,
/// or a fixture tree): per process, /proc/[pid]/stat for name and CPU time, statm for the
/// resident set size (the footprint) and io for the bytes it read from and wrote to storage.
/// Holds no state between scans, so any thread may scan.
class LinuxProcessSource final : public ProcessSource {
public:
    /// The most process ids one scan looks at; later directory entries are ignored.
    static constexpr std::size_t maximumProcesses = 8192;

    explicit LinuxProcessSource(const std::filesystem::path& procRoot = "/proc");

    /// Every process whose stat could be read, in directory order. A process whose io cannot be
    /// read (another user's, without CAP_SYS_PTRACE) is kept with zero disk counters; one that
    /// exited while the table was listed is left out. Empty when the root cannot be listed.
    std::vector<ProcessSample> sampleProcesses() override;
    /// 10^9 / USER_HZ (sysconf(_SC_CLK_TCK)), read once when built.
    double nanosecondsPerTick() const override { return tickNanoseconds; }

private:
    std::string root;
    double tickNanoseconds;
    std::uint64_t pageSizeBytes;
};

}  // namespace corvane
