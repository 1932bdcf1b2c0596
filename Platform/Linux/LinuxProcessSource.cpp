#include "Platform/Linux/LinuxProcessSource.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "Platform/Linux/ProcPidIo.h"
#include "Platform/Linux/ProcPidStat.h"
#include "Platform/Linux/ProcPidStatm.h"

namespace corvane {

namespace {

// USER_HZ is 100 on every architecture Debian builds for; used only if sysconf cannot say.
constexpr long fallbackTicksPerSecond = 100;
constexpr long fallbackPageSizeBytes = 4096;

// stat is one line of 52 numbers after a name of at most 64 bytes, statm seven numbers, io seven
// short lines: all fit many times over.
constexpr std::size_t fileBufferSize = 4096;

// The longest 32-bit pid has 10 digits, the longest leaf is "statm", and then the NUL.
constexpr std::size_t maximumPidDigits = 10;
constexpr std::size_t pathBufferSize = maximumPidDigits + sizeof("/statm");

// Descriptors left to the rest of the program (Qt, D-Bus, the settings file, the other
// samplers) when the source sizes its budget from the process's limit.
constexpr rlim_t descriptorsLeftToProgram = 1024;

// A process whose io was refused (another user's) is asked again this often, in scans, in case
// it has since become readable (a server that dropped its privileges to this user).
constexpr std::uint64_t refusedIoRetryScans = 16;

// "<pid>/<leaf>" in `path`, NUL-terminated: relative to the root's descriptor, so the kernel
// looks up two names per open instead of walking the whole path from "/".
const char* pathOf(std::array<char, pathBufferSize>& path, std::int32_t pid,
                   std::string_view leaf) {
    char* end = std::to_chars(path.data(), path.data() + maximumPidDigits, pid).ptr;
    *end++ = '/';
    end = std::copy(leaf.begin(), leaf.end(), end);
    *end = '\0';
    return path.data();
}

FileDescriptor openFile(int directory, std::int32_t pid, std::string_view leaf) {
    std::array<char, pathBufferSize> path;
    return FileDescriptor(
        ::openat(directory, pathOf(path, pid, leaf), O_RDONLY | O_CLOEXEC | O_NOCTTY));
}

// The whole of a small file, read from its start with one pread(2): procfs hands over a stat
// or io record in one piece when the buffer holds it, so a second read only to see the end of
// the file would cost a system call per file for nothing; and reading at offset 0 rereads a
// kept descriptor without a seek. Absent when the file did not open or cannot be read, reads
// empty, or fills the buffer (then it is not a file this source knows).
std::optional<std::string_view> readWhole(const FileDescriptor& file,
                                          std::array<char, fileBufferSize>& buffer) {
    if (!file.isOpen()) {
        return std::nullopt;
    }
    ssize_t count = 0;
    do {
        count = ::pread(file.get(), buffer.data(), buffer.size(), 0);
    } while (count < 0 && errno == EINTR);
    if (count <= 0 || static_cast<std::size_t>(count) == buffer.size()) {
        return std::nullopt;
    }
    return std::string_view(buffer.data(), static_cast<std::size_t>(count));
}

// Held at the largest value rather than wrapping to a small one.
std::uint64_t bytesFromPages(std::uint64_t pages, std::uint64_t pageSizeBytes) {
    constexpr auto largest = std::numeric_limits<std::uint64_t>::max();
    return pages > largest / pageSizeBytes ? largest : pages * pageSizeBytes;
}

// Fills `sample` from a process's open files (one that did not open is not open); false when
// stat cannot be read or parsed, which for a real process means it exited. `ioRead` tells
// whether io gave the disk counters.
bool fillSample(ProcessSample& sample, const FileDescriptor& statFile,
                const FileDescriptor& statmFile, const FileDescriptor& ioFile,
                std::uint64_t pageSizeBytes, bool& ioRead) {
    std::array<char, fileBufferSize> buffer;
    const auto statText = readWhole(statFile, buffer);
    const auto stat = statText ? parseProcPidStat(*statText) : std::nullopt;
    if (!stat) {
        return false;
    }
    // The name is copied out before the next read reuses the buffer its view points into.
    sample.name = processName(stat->comm, sample.pid);
    sample.cpuTicks = stat->cpuTicks;
    sample.startTime = stat->startTime;
    // The resident set size comes from statm although stat carries it too. Since Linux 6.2 the
    // kernel keeps it in per-CPU counters; recent kernels ("mm: fix the inaccurate memory
    // statistics issue for users") add up the per-CPU parts for statm and status, which ps, top
    // and htop show, but stat still prints the quick partial reading, off by up to a counter
    // batch (32 pages or more) per CPU: tens of megabytes on a many-core machine, and a few
    // hundred kilobytes per process even on the 2-CPU development VM. stat's reading stands in
    // when the process exited between the two reads.
    const auto statmText = readWhole(statmFile, buffer);
    const auto residentPages =
        statmText ? parseProcPidStatmResidentPages(*statmText) : std::nullopt;
    sample.footprintBytes =
        bytesFromPages(residentPages.value_or(stat->residentPages), pageSizeBytes);
    // io is mode 0400 and also needs ptrace access, checked again on every read: another user's
    // process (or a setuid one) answers EACCES. It still belongs in the CPU and memory lists, so
    // it keeps zero counters.
    const auto ioText = readWhole(ioFile, buffer);
    const auto io = ioText ? parseProcPidIo(*ioText) : std::nullopt;
    ioRead = io.has_value();
    sample.diskRead = io ? io->readBytes : 0;
    sample.diskWrite = io ? io->writeBytes : 0;
    return true;
}

double nanosecondsPerClockTick() {
    const long ticksPerSecond = ::sysconf(_SC_CLK_TCK);
    return 1e9 / static_cast<double>(ticksPerSecond > 0 ? ticksPerSecond : fallbackTicksPerSecond);
}

std::uint64_t pageSize() {
    const long bytes = ::sysconf(_SC_PAGESIZE);
    return static_cast<std::uint64_t>(bytes > 0 ? bytes : fallbackPageSizeBytes);
}

// Raises the soft descriptor limit as far as the hard limit allows and the source can use, and
// returns how many descriptors the source may keep. Only as far as needed: a higher soft limit
// is inherited by every program the agent starts, and one that still uses select(2) breaks on
// descriptors past 1024.
std::size_t descriptorBudgetFromLimit() {
    constexpr rlim_t mostUseful = 3 * LinuxProcessSource::maximumProcesses;
    rlimit limit{};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) {
        return 0;
    }
    const rlim_t wanted = std::min(limit.rlim_max, mostUseful + descriptorsLeftToProgram);
    if (limit.rlim_cur < wanted) {
        rlimit raised = limit;
        raised.rlim_cur = wanted;
        if (::setrlimit(RLIMIT_NOFILE, &raised) == 0) {
            limit = raised;
        }
    }
    const rlim_t left = std::min(descriptorsLeftToProgram, limit.rlim_cur / 2);
    return static_cast<std::size_t>(std::min(mostUseful, limit.rlim_cur - left));
}

}  // namespace

LinuxProcessSource::LinuxProcessSource(const std::filesystem::path& procRoot)
    : LinuxProcessSource(procRoot, descriptorBudgetFromLimit()) {}

LinuxProcessSource::LinuxProcessSource(const std::filesystem::path& procRoot, std::size_t budget)
    : root(procRoot.string()),
      tickNanoseconds(nanosecondsPerClockTick()),
      pageSizeBytes(pageSize()),
      descriptorBudget(budget),
      listing(root) {}

LinuxProcessSource::~LinuxProcessSource() = default;

void LinuxProcessSource::forget(std::unordered_map<std::int32_t, KeptProcess>::iterator process) {
    descriptorsKept -= process->second.files.openCount();
    kept.erase(process);
}

bool LinuxProcessSource::readKept(KeptProcess& process, ProcessSample& sample) {
    // A refused io is asked again now and then; kept when it opens and the budget allows.
    std::optional<FileDescriptor> retriedIo;
    if (!process.files.io.isOpen() && scans % refusedIoRetryScans == 0) {
        retriedIo = openFile(listing.descriptor(), sample.pid, "io");
    }
    const FileDescriptor& ioFile = retriedIo ? *retriedIo : process.files.io;
    bool ioRead = false;
    if (!fillSample(sample, process.files.stat, process.files.statm, ioFile, pageSizeBytes,
                    ioRead)) {
        return false;
    }
    if (retriedIo && ioRead && descriptorsKept < descriptorBudget) {
        process.files.io = std::move(*retriedIo);
        ++descriptorsKept;
    } else if (!retriedIo && !ioRead && process.files.io.isOpen()) {
        // Refused since it was opened (the process ran a setuid program): no use keeping it.
        process.files.io.reset();
        --descriptorsKept;
    }
    return true;
}

bool LinuxProcessSource::keepOrClose(std::int32_t pid, std::uint64_t inode, ProcessFiles& files) {
    const std::size_t count = files.openCount();
    if (descriptorsKept + count > descriptorBudget) {
        return false;
    }
    descriptorsKept += count;
    kept.insert_or_assign(
        pid, KeptProcess{.inode = inode, .files = std::move(files), .lastScan = scans});
    return true;
}

std::vector<ProcessSample> LinuxProcessSource::sampleProcesses() {
    const std::scoped_lock lock(scanning);
    ++scans;
    std::vector<ProcessSample> samples;
    const auto* entries = listing.list(maximumProcesses);
    if (entries == nullptr) {
        return samples;
    }
    const int procDirectory = listing.descriptor();
    samples.reserve(entries->size());
    std::size_t keptAndListed = 0;
    for (const PidEntry& entry : *entries) {
        ProcessSample sample{.pid = entry.pid};
        auto process = kept.find(entry.pid);
        if (process != kept.end() && process->second.inode == entry.inode) {
            process->second.lastScan = scans;
            if (readKept(process->second, sample)) {
                ++keptAndListed;
                samples.push_back(std::move(sample));
                continue;
            }
        }
        // Never kept, past the budget, exited since the listing, or its pid now names another
        // process: read it afresh.
        if (process != kept.end()) {
            forget(process);
        }
        ProcessFiles files{.stat = openFile(procDirectory, entry.pid, "stat")};
        if (!files.stat.isOpen()) {
            continue;
        }
        files.statm = openFile(procDirectory, entry.pid, "statm");
        files.io = openFile(procDirectory, entry.pid, "io");
        bool ioRead = false;
        if (!fillSample(sample, files.stat, files.statm, files.io, pageSizeBytes, ioRead)) {
            continue;
        }
        if (!ioRead) {
            files.io.reset();
        }
        if (keepOrClose(entry.pid, entry.inode, files)) {
            ++keptAndListed;
        }
        samples.push_back(std::move(sample));
    }
    // Processes that are gone, found by counting so that a scan where none went costs nothing.
    if (kept.size() != keptAndListed) {
        std::erase_if(kept, [this](const auto& process) {
            if (process.second.lastScan == scans) {
                return false;
            }
            descriptorsKept -= process.second.files.openCount();
            return true;
        });
    }
    return samples;
}

}  // namespace corvane
