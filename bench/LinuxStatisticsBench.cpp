// The cost of one refresh's kernel reads on this machine's real /proc and /sys: each provider
// call, and beside it a "floor" made of the same files read with plain open/read/close into a
// stack buffer and only the needed numbers picked out by hand.

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "Platform/Linux/LinuxSystemStatistics.h"

namespace corvane {
namespace {

// ---- Provider ---------------------------------------------------------------------------

void BM_ProviderReadCPULoad(benchmark::State& state) {
    LinuxSystemStatistics statistics;
    CPULoadSample sample;
    for (auto _ : state) {
        statistics.readCPULoad(sample);
        benchmark::DoNotOptimize(sample);
    }
}
BENCHMARK(BM_ProviderReadCPULoad);

void BM_ProviderReadMemory(benchmark::State& state) {
    LinuxSystemStatistics statistics;
    for (auto _ : state) {
        benchmark::DoNotOptimize(statistics.readMemory());
    }
}
BENCHMARK(BM_ProviderReadMemory);

void BM_ProviderMemoryPressureLevel(benchmark::State& state) {
    LinuxSystemStatistics statistics;
    for (auto _ : state) {
        benchmark::DoNotOptimize(statistics.memoryPressureLevel());
    }
}
BENCHMARK(BM_ProviderMemoryPressureLevel);

void BM_ProviderLoadAverages(benchmark::State& state) {
    LinuxSystemStatistics statistics;
    for (auto _ : state) {
        benchmark::DoNotOptimize(statistics.loadAverages());
    }
}
BENCHMARK(BM_ProviderLoadAverages);

void BM_ProviderUptimeSeconds(benchmark::State& state) {
    LinuxSystemStatistics statistics;
    for (auto _ : state) {
        benchmark::DoNotOptimize(statistics.uptimeSeconds());
    }
}
BENCHMARK(BM_ProviderUptimeSeconds);

// Every provider call one monitor refresh makes.
void BM_ProviderRefresh(benchmark::State& state) {
    LinuxSystemStatistics statistics;
    CPULoadSample sample;
    for (auto _ : state) {
        statistics.readCPULoad(sample);
        benchmark::DoNotOptimize(sample);
        benchmark::DoNotOptimize(statistics.loadAverages());
        benchmark::DoNotOptimize(statistics.readMemory());
        benchmark::DoNotOptimize(statistics.memoryPressureLevel());
        benchmark::DoNotOptimize(statistics.uptimeSeconds());
    }
}
BENCHMARK(BM_ProviderRefresh);

// ---- Floor ------------------------------------------------------------------------------

constexpr std::size_t floorBufferSize = 64 * 1024;

// open/read/close into `buffer`, NUL-terminated; the length, or 0 on failure.
std::size_t readInto(const char* path, char* buffer) {
    const int file = ::open(path, O_RDONLY | O_CLOEXEC);
    if (file < 0) {
        return 0;
    }
    std::size_t used = 0;
    ssize_t count = 0;
    while (used < floorBufferSize - 1 &&
           (count = ::read(file, buffer + used, floorBufferSize - 1 - used)) > 0) {
        used += static_cast<std::size_t>(count);
    }
    ::close(file);
    buffer[used] = '\0';
    return used;
}

std::uint64_t digitsAt(const char*& cursor) {
    while (*cursor == ' ' || *cursor == '\t') {
        ++cursor;
    }
    std::uint64_t value = 0;
    while (*cursor >= '0' && *cursor <= '9') {
        value = value * 10 + static_cast<std::uint64_t>(*cursor++ - '0');
    }
    return value;
}

std::uint64_t floorStat(char* buffer) {
    readInto("/proc/stat", buffer);
    std::uint64_t sum = 0;
    const char* cursor = buffer;
    while (std::strncmp(cursor, "cpu", 3) == 0) {
        cursor += 3;
        while (*cursor != ' ') {
            ++cursor;
        }
        for (int column = 0; column < 8; ++column) {
            sum += digitsAt(cursor);
        }
        cursor = std::strchr(cursor, '\n') + 1;
    }
    return sum;
}

std::uint64_t floorMeminfo(char* buffer) {
    static constexpr const char* names[] = {
        "MemTotal:",    "MemAvailable:", "Buffers:",    "Cached:",        "SReclaimable:",
        "SUnreclaim:",  "KernelStack:",  "PageTables:", "SecPageTables:", "Percpu:",
        "Unevictable:", "Zswap:",        "SwapTotal:",  "SwapFree:",
    };
    const auto length = readInto("/proc/meminfo", buffer);
    std::uint64_t sum = 0;
    const char* end = buffer + length;
    for (const char* line = buffer; line < end;) {
        for (const char* name : names) {
            const auto nameLength = std::strlen(name);
            if (std::strncmp(line, name, nameLength) == 0) {
                const char* cursor = line + nameLength;
                sum += digitsAt(cursor) * 1024;
                break;
            }
        }
        line = std::strchr(line, '\n') + 1;
    }
    return sum;
}

std::uint64_t floorVmstat(char* buffer) {
    readInto("/proc/vmstat", buffer);
    const char* in = std::strstr(buffer, "\npgpgin ") + 8;
    const char* out = std::strstr(in, "\npgpgout ") + 9;
    return digitsAt(in) * 1024 + digitsAt(out) * 1024;
}

double floorPressure(char* buffer) {
    if (readInto("/proc/pressure/memory", buffer) == 0) {
        return -1;
    }
    const char* some = std::strstr(buffer, "avg10=") + 6;
    const char* full = std::strstr(some, "avg10=") + 6;
    return std::strtod(some, nullptr) + std::strtod(full, nullptr);
}

double floorLoadavg(char* buffer) {
    readInto("/proc/loadavg", buffer);
    char* cursor = buffer;
    const double one = std::strtod(cursor, &cursor);
    const double five = std::strtod(cursor, &cursor);
    const double fifteen = std::strtod(cursor, &cursor);
    return one + five + fifteen;
}

double floorUptime(char* buffer) {
    readInto("/proc/uptime", buffer);
    return std::strtod(buffer, nullptr);
}

// The zram devices of this machine, found once: the floor does no directory listing.
const std::vector<std::string>& zramStatPaths() {
    static const std::vector<std::string> paths = [] {
        std::vector<std::string> found;
        std::error_code error;
        for (std::filesystem::directory_iterator entry("/sys/block", error), end;
             !error && entry != end; entry.increment(error)) {
            if (entry->path().filename().native().starts_with("zram")) {
                found.push_back((entry->path() / "mm_stat").native());
            }
        }
        return found;
    }();
    return paths;
}

std::uint64_t floorZram(char* buffer) {
    std::uint64_t sum = 0;
    for (const auto& path : zramStatPaths()) {
        readInto(path.c_str(), buffer);
        const char* cursor = buffer;
        digitsAt(cursor);
        digitsAt(cursor);
        sum += digitsAt(cursor);
    }
    return sum;
}

template <typename Floor>
void runFloor(benchmark::State& state, Floor floor) {
    char buffer[floorBufferSize];
    for (auto _ : state) {
        benchmark::DoNotOptimize(floor(buffer));
    }
}

void BM_FloorStat(benchmark::State& state) {
    runFloor(state, floorStat);
}
BENCHMARK(BM_FloorStat);

void BM_FloorMeminfo(benchmark::State& state) {
    runFloor(state, floorMeminfo);
}
BENCHMARK(BM_FloorMeminfo);

void BM_FloorVmstat(benchmark::State& state) {
    runFloor(state, floorVmstat);
}
BENCHMARK(BM_FloorVmstat);

void BM_FloorZram(benchmark::State& state) {
    runFloor(state, floorZram);
}
BENCHMARK(BM_FloorZram);

// What readMemory() reads: meminfo, vmstat and every zram device.
void BM_FloorMemory(benchmark::State& state) {
    runFloor(state, [](char* buffer) {
        return floorMeminfo(buffer) + floorVmstat(buffer) + floorZram(buffer);
    });
}
BENCHMARK(BM_FloorMemory);

void BM_FloorPressure(benchmark::State& state) {
    runFloor(state, floorPressure);
}
BENCHMARK(BM_FloorPressure);

void BM_FloorLoadavg(benchmark::State& state) {
    runFloor(state, floorLoadavg);
}
BENCHMARK(BM_FloorLoadavg);

void BM_FloorUptime(benchmark::State& state) {
    runFloor(state, floorUptime);
}
BENCHMARK(BM_FloorUptime);

// The set of files one monitor refresh reads.
void BM_FloorRefresh(benchmark::State& state) {
    runFloor(state, [](char* buffer) {
        return static_cast<double>(floorStat(buffer) + floorMeminfo(buffer) + floorVmstat(buffer) +
                                   floorZram(buffer)) +
               floorPressure(buffer) + floorLoadavg(buffer) + floorUptime(buffer);
    });
}
BENCHMARK(BM_FloorRefresh);

}  // namespace
}  // namespace corvane
