#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "Foundation/FileDescriptor.h"
#include "Platform/Linux/PidListing.h"
#include "Platform/ProcessSource.h"

namespace corvane {

/// The process table of a Linux machine, read from procfs under the given root (the real one,
/// or a fixture tree): per process, /proc/[pid]/stat for name and CPU time, statm for the
/// resident set size (the footprint) and io for the bytes it read from and wrote to storage.
///
/// Between scans it keeps each process's three files open, up to a budget of descriptors, and
/// reads them again with pread(2): a scan then costs three reads per process instead of three
/// opens, reads and closes, and the root is listed only to find new processes and drop
/// vanished ones. A kept descriptor of a process that exited fails to read rather than reading
/// a later process under the same pid, and a listing that gives the pid's directory another
/// inode number drops the kept files too, so a reused pid is always read afresh. Processes past
/// the budget are read with open/read/close. One scan at a time (a second caller waits).
class LinuxProcessSource final : public ProcessSource {
public:
    /// The most process ids one scan looks at; later directory entries are ignored.
    static constexpr std::size_t maximumProcesses = 8192;

    /// Raises this process's soft limit of open descriptors to its hard limit and keeps up to
    /// half of that (at most three per process of `maximumProcesses`), leaving the rest to the
    /// program.
    explicit LinuxProcessSource(const std::filesystem::path& procRoot = "/proc");
    /// Keeps at most `descriptorBudget` descriptors open between scans; 0 keeps none and reads
    /// every file with open/read/close. Leaves the descriptor limit as it is.
    LinuxProcessSource(const std::filesystem::path& procRoot, std::size_t descriptorBudget);
    ~LinuxProcessSource() override;

    /// Every process whose stat could be read, in directory order. A process whose io cannot be
    /// read (another user's, without CAP_SYS_PTRACE) is kept with zero disk counters; one that
    /// exited while the table was listed is left out. Empty when the root cannot be listed.
    std::vector<ProcessSample> sampleProcesses() override;
    /// 10^9 / USER_HZ (sysconf(_SC_CLK_TCK)), read once when built.
    double nanosecondsPerTick() const override { return tickNanoseconds; }

private:
    /// The files read of one process; io stays closed when it is refused.
    struct ProcessFiles {
        FileDescriptor stat;
        FileDescriptor statm;
        FileDescriptor io;

        std::size_t openCount() const {
            return static_cast<std::size_t>(stat.isOpen()) +
                   static_cast<std::size_t>(statm.isOpen()) + static_cast<std::size_t>(io.isOpen());
        }
    };
    /// The open files of one process seen by an earlier scan.
    struct KeptProcess {
        std::uint64_t inode = 0;
        ProcessFiles files;
        /// The scan that last listed it; kept files of processes no longer listed are closed.
        std::uint64_t lastScan = 0;
    };

    bool readKept(KeptProcess& process, ProcessSample& sample);
    bool keepOrClose(std::int32_t pid, std::uint64_t inode, ProcessFiles& files);
    void forget(std::unordered_map<std::int32_t, KeptProcess>::iterator process);

    std::mutex scanning;
    std::string root;
    double tickNanoseconds;
    std::uint64_t pageSizeBytes;
    std::size_t descriptorBudget;
    std::size_t descriptorsKept = 0;
    std::uint64_t scans = 0;
    PidListing listing;
    std::unordered_map<std::int32_t, KeptProcess> kept;
};

}  // namespace corvane
