#include "Platform/Linux/LinuxProcessSource.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include "Foundation/DirectoryListing.h"
#include "Foundation/FileDescriptor.h"
#include "Foundation/NumberParsing.h"
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

// The pid a directory entry of the procfs root names; absent for "self", "sys", "meminfo"...
std::optional<std::int32_t> pidFromName(std::string_view name) {
    if (name.empty() || name.size() > maximumPidDigits) {
        return std::nullopt;
    }
    const auto pid = parseNumber<std::int32_t>(name);
    if (!pid || *pid < 1) {
        return std::nullopt;
    }
    return pid;
}

// "<pidName>/<leaf>" in `path`, NUL-terminated: relative to the root's descriptor, so the
// kernel looks up two names per open instead of walking the whole path from "/".
const char* pathOf(std::array<char, pathBufferSize>& path, std::string_view pidName,
                   std::string_view leaf) {
    char* end = std::copy(pidName.begin(), pidName.end(), path.data());
    *end++ = '/';
    end = std::copy(leaf.begin(), leaf.end(), end);
    *end = '\0';
    return path.data();
}

// The whole of a small file, read with one read(2): procfs hands over a stat or io record in
// one piece when the buffer holds it, so a second read only to see the end of the file would
// cost a system call per file for nothing. Absent when the file cannot be opened or read,
// reads empty, or fills the buffer (then it is not a file this source knows).
std::optional<std::string_view> readSmallFile(int directory, const char* relativePath,
                                              std::array<char, fileBufferSize>& buffer) {
    FileDescriptor file(::openat(directory, relativePath, O_RDONLY | O_CLOEXEC | O_NOCTTY));
    if (file.get() < 0) {
        return std::nullopt;
    }
    ssize_t count = 0;
    do {
        count = ::read(file.get(), buffer.data(), buffer.size());
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

// One process's sample; absent when its stat cannot be read or parsed, which for a real
// process means it exited after the listing.
std::optional<ProcessSample> readProcess(int procDirectory, std::string_view pidName,
                                         std::int32_t pid, std::uint64_t pageSizeBytes) {
    std::array<char, pathBufferSize> path;
    std::array<char, fileBufferSize> buffer;
    const auto statText = readSmallFile(procDirectory, pathOf(path, pidName, "stat"), buffer);
    const auto stat = statText ? parseProcPidStat(*statText) : std::nullopt;
    if (!stat) {
        return std::nullopt;
    }
    // The name is copied out before the next read reuses the buffer its view points into.
    ProcessSample sample{
        .pid = pid,
        .name = processName(stat->comm, pid),
        .cpuTicks = stat->cpuTicks,
        .startTime = stat->startTime,
    };
    // The resident set size comes from statm although stat carries it too. Since Linux 6.2 the
    // kernel keeps it in per-CPU counters; recent kernels ("mm: fix the inaccurate memory
    // statistics issue for users") add up the per-CPU parts for statm and status, which ps, top
    // and htop show, but stat still prints the quick partial reading, off by up to a counter
    // batch (32 pages or more) per CPU: tens of megabytes on a many-core machine, and a few
    // hundred kilobytes per process even on the 2-CPU development VM. Exact figures cost one more
    // open/read/close per process, about 1.5 us (bench/ProcessScanBench.cpp). stat's reading
    // stands in when the process exited between the two reads.
    const auto statmText = readSmallFile(procDirectory, pathOf(path, pidName, "statm"), buffer);
    const auto residentPages =
        statmText ? parseProcPidStatmResidentPages(*statmText) : std::nullopt;
    sample.footprintBytes =
        bytesFromPages(residentPages.value_or(stat->residentPages), pageSizeBytes);
    // io is mode 0400 and also needs ptrace access: another user's process (or a setuid one)
    // answers EACCES. It still belongs in the CPU and memory lists, so it keeps zero counters.
    const auto ioText = readSmallFile(procDirectory, pathOf(path, pidName, "io"), buffer);
    if (const auto io = ioText ? parseProcPidIo(*ioText) : std::nullopt) {
        sample.diskRead = io->readBytes;
        sample.diskWrite = io->writeBytes;
    }
    return sample;
}

double nanosecondsPerClockTick() {
    const long ticksPerSecond = ::sysconf(_SC_CLK_TCK);
    return 1e9 / static_cast<double>(ticksPerSecond > 0 ? ticksPerSecond : fallbackTicksPerSecond);
}

std::uint64_t pageSize() {
    const long bytes = ::sysconf(_SC_PAGESIZE);
    return static_cast<std::uint64_t>(bytes > 0 ? bytes : fallbackPageSizeBytes);
}

}  // namespace

LinuxProcessSource::LinuxProcessSource(const std::filesystem::path& procRoot)
    : root(procRoot.string()),
      tickNanoseconds(nanosecondsPerClockTick()),
      pageSizeBytes(pageSize()) {}

std::vector<ProcessSample> LinuxProcessSource::sampleProcesses() {
    std::vector<ProcessSample> samples;
    DirectoryListing listing(root.c_str());
    if (!listing.isOpen()) {
        return samples;
    }
    const int procDirectory = listing.descriptor();
    std::size_t listed = 0;
    // Each process is read as soon as it is listed, not after the whole listing, which leaves
    // it the least time to exit in between.
    while (listed < maximumProcesses) {
        const auto name = listing.next();
        if (!name) {
            break;
        }
        const auto pid = pidFromName(*name);
        if (!pid) {
            continue;
        }
        ++listed;
        if (auto sample = readProcess(procDirectory, *name, *pid, pageSizeBytes)) {
            samples.push_back(std::move(*sample));
        }
    }
    return samples;
}

}  // namespace corvane
