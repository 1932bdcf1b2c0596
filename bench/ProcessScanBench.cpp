// The cost of one process scan, per process: LinuxProcessSource on this machine's real /proc
// and on a generated tree of 2,000 processes, beside a "floor" that lists the same directory
// and reads the same files per process with plain open/read/close into a stack buffer, picking
// out only the needed numbers by hand. The source keeps its descriptors between scans, so its
// steady state is measured; with a budget of no descriptors it reads the way the floor does.
// Also what listing the root costs, with readdir(3) and with getdents64(2) on a kept descriptor.

#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>

#include "Platform/Linux/LinuxProcessSource.h"
#include "Platform/Linux/PidListing.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

constexpr int generatedProcessCount = 2000;

// A tree of `generatedProcessCount` processes with stat, io and statm files in the kernel's
// formats, made on first use and removed when the program exits.
class GeneratedTree {
public:
    GeneratedTree()
        : root(fs::temp_directory_path() /
               ("corvane-process-bench-" + std::to_string(::getpid()))) {
        for (int pid = 1000; pid < 1000 + generatedProcessCount; ++pid) {
            const auto directory = root / std::to_string(pid);
            fs::create_directories(directory);
            std::ofstream(directory / "stat")
                << pid << " (worker " << pid << ") S 1 " << pid << ' ' << pid
                << " 0 -1 4194560 18321 402 3 0 " << pid * 7 << ' ' << pid * 3
                << " 0 0 20 0 4 0 204653 812457984 " << pid * 11
                << " 18446744073709551615 94818859454464 94818859474345 140733123177632 0 0 0 0 "
                   "0 0 0 0 0 17 1 0 0 0 0 0 94818859490352 94818859491968 94819329720320 "
                   "140733123185292 140733123185312 140733123185312 140733123186667 0\n";
            std::ofstream(directory / "io")
                << "rchar: 6976\nwchar: 4096\nsyscr: 10\nsyscw: 1\nread_bytes: " << pid * 4096
                << "\nwrite_bytes: " << pid * 512 << "\ncancelled_write_bytes: 0\n";
            std::ofstream(directory / "statm") << "198357 " << pid * 11 << " 376 5 0 123 0\n";
        }
        // A procfs root also holds entries that are not processes.
        std::ofstream(root / "meminfo") << "MemTotal: 1 kB\n";
    }
    GeneratedTree(const GeneratedTree&) = delete;
    GeneratedTree& operator=(const GeneratedTree&) = delete;
    ~GeneratedTree() {
        std::error_code ignored;
        fs::remove_all(root, ignored);
    }

    const fs::path root;
};

const fs::path& generatedRoot() {
    static const GeneratedTree tree;
    return tree.root;
}

// Reports the time per process next to the time per scan.
void reportPerProcess(benchmark::State& state, std::size_t processes) {
    state.counters["processes"] = static_cast<double>(processes);
    state.counters["per_process"] = benchmark::Counter(
        static_cast<double>(processes),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// ---- Scan -------------------------------------------------------------------------------

void runScan(benchmark::State& state, LinuxProcessSource& source) {
    std::size_t processes = 0;
    for (auto _ : state) {
        const auto samples = source.sampleProcesses();
        processes = samples.size();
        benchmark::DoNotOptimize(samples.data());
    }
    reportPerProcess(state, processes);
}

void BM_ProcessScanRealProc(benchmark::State& state) {
    LinuxProcessSource source("/proc");
    runScan(state, source);
}
BENCHMARK(BM_ProcessScanRealProc);

void BM_ProcessScanGenerated2000(benchmark::State& state) {
    LinuxProcessSource source(generatedRoot());
    runScan(state, source);
}
BENCHMARK(BM_ProcessScanGenerated2000);

// Keeping no descriptors: what a scan costs past the budget, and what it cost before.
void BM_ProcessScanOpenReadCloseRealProc(benchmark::State& state) {
    LinuxProcessSource source("/proc", 0);
    runScan(state, source);
}
BENCHMARK(BM_ProcessScanOpenReadCloseRealProc);

void BM_ProcessScanOpenReadCloseGenerated2000(benchmark::State& state) {
    LinuxProcessSource source(generatedRoot(), 0);
    runScan(state, source);
}
BENCHMARK(BM_ProcessScanOpenReadCloseGenerated2000);

// ---- Listing the root -------------------------------------------------------------------

void BM_PidListingGetdents64RealProc(benchmark::State& state) {
    PidListing listing("/proc");
    std::size_t processes = 0;
    for (auto _ : state) {
        const auto* entries = listing.list(LinuxProcessSource::maximumProcesses);
        processes = entries != nullptr ? entries->size() : 0;
        benchmark::DoNotOptimize(entries);
    }
    reportPerProcess(state, processes);
}
BENCHMARK(BM_PidListingGetdents64RealProc);

// opendir/readdir/closedir, picking out the pids as the listing does.
void BM_PidListingReaddirRealProc(benchmark::State& state) {
    std::size_t processes = 0;
    for (auto _ : state) {
        processes = 0;
        DIR* listing = ::opendir("/proc");
        while (const dirent* entry = ::readdir(listing)) {
            if (const auto pid = pidFromName(entry->d_name)) {
                benchmark::DoNotOptimize(*pid);
                ++processes;
            }
        }
        ::closedir(listing);
    }
    reportPerProcess(state, processes);
}
BENCHMARK(BM_PidListingReaddirRealProc);

// ---- Floor ------------------------------------------------------------------------------

constexpr std::size_t floorBufferSize = 4096;

// open/read/close of `path` into `buffer`, NUL-terminated; the length, or 0 on failure.
std::size_t readInto(const char* path, char* buffer) {
    const int file = ::open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return 0;
    }
    const auto count = ::read(file, buffer, floorBufferSize - 1);
    ::close(file);
    const auto used = count > 0 ? static_cast<std::size_t>(count) : 0;
    buffer[used] = '\0';
    return used;
}

std::uint64_t digitsAt(const char*& cursor) {
    while (*cursor == ' ') {
        ++cursor;
    }
    std::uint64_t value = 0;
    while (*cursor >= '0' && *cursor <= '9') {
        value = value * 10 + static_cast<std::uint64_t>(*cursor++ - '0');
    }
    return value;
}

void skipFields(const char*& cursor, int count) {
    for (int field = 0; field < count; ++field) {
        cursor = std::strchr(cursor + 1, ' ');
    }
}

// utime + stime + rss of a stat text.
std::uint64_t floorStat(const char* buffer) {
    const char* cursor = std::strrchr(buffer, ')') + 1;
    skipFields(cursor, 11);  // state ... cmajflt
    std::uint64_t sum = digitsAt(cursor) + digitsAt(cursor);
    skipFields(cursor, 8);  // cutime ... vsize
    return sum + digitsAt(cursor);
}

std::uint64_t floorIo(const char* buffer) {
    const char* read = std::strstr(buffer, "read_bytes: ") + 12;
    const char* write = std::strstr(read, "write_bytes: ") + 13;
    return digitsAt(read) + digitsAt(write);
}

// Lists `root` and reads stat, statm (unless left out) and io of every process; a checksum.
template <bool withStatm>
std::uint64_t floorScan(const std::string& root, std::size_t& processes) {
    char path[256];
    char buffer[floorBufferSize];
    std::memcpy(path, root.data(), root.size());
    path[root.size()] = '/';
    char* const pidStart = path + root.size() + 1;
    std::uint64_t sum = 0;
    processes = 0;
    DIR* listing = ::opendir(root.c_str());
    while (const dirent* entry = ::readdir(listing)) {
        if (entry->d_name[0] < '1' || entry->d_name[0] > '9') {
            continue;
        }
        const auto nameLength = std::strlen(entry->d_name);
        std::memcpy(pidStart, entry->d_name, nameLength);
        char* const leaf = pidStart + nameLength;
        std::memcpy(leaf, "/stat", sizeof("/stat"));
        if (readInto(path, buffer) == 0) {
            continue;
        }
        ++processes;
        sum += floorStat(buffer);
        if constexpr (withStatm) {
            std::memcpy(leaf, "/statm", sizeof("/statm"));
            if (readInto(path, buffer) > 0) {
                const char* cursor = buffer;
                digitsAt(cursor);
                sum += digitsAt(cursor);
            }
        }
        std::memcpy(leaf, "/io", sizeof("/io"));
        if (readInto(path, buffer) > 0) {
            sum += floorIo(buffer);
        }
    }
    ::closedir(listing);
    return sum;
}

template <bool withStatm>
void runFloor(benchmark::State& state, const fs::path& root) {
    const auto rootText = root.string();
    std::size_t processes = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(floorScan<withStatm>(rootText, processes));
    }
    reportPerProcess(state, processes);
}

void BM_ProcessFloorRealProc(benchmark::State& state) {
    runFloor<true>(state, "/proc");
}
BENCHMARK(BM_ProcessFloorRealProc);

void BM_ProcessFloorGenerated2000(benchmark::State& state) {
    runFloor<true>(state, generatedRoot());
}
BENCHMARK(BM_ProcessFloorGenerated2000);

// Without statm, taking stat's partial resident reading instead: what exact footprints cost.
void BM_ProcessFloorWithoutStatmRealProc(benchmark::State& state) {
    runFloor<false>(state, "/proc");
}
BENCHMARK(BM_ProcessFloorWithoutStatmRealProc);

}  // namespace
}  // namespace corvane
