#include "Platform/Linux/MemoryMapping.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {
namespace {

constexpr std::uint64_t KiB = 1024;

// A machine with every field present: 1000 KiB total, 400 KiB available, so 600 KiB used.
Meminfo ordinaryMeminfo() {
    return Meminfo{
        .memTotal = 1000 * KiB,
        .memAvailable = 400 * KiB,
        .buffers = 10 * KiB,
        .cached = 200 * KiB,
        .sReclaimable = 30 * KiB,
        .sUnreclaim = 40 * KiB,
        .kernelStack = 5 * KiB,
        .pageTables = 15 * KiB,
        .secPageTables = 1 * KiB,
        .percpu = 2 * KiB,
        .unevictable = 7 * KiB,
        .zswap = 50 * KiB,
        .swapTotal = 800 * KiB,
        .swapFree = 300 * KiB,
    };
}

constexpr Vmstat ordinaryVmstat{.pagedInBytes = 123 * KiB, .pagedOutBytes = 45 * KiB};

Meminfo ordinaryMeminfoWith(std::optional<std::uint64_t> Meminfo::*field,
                            std::optional<std::uint64_t> value) {
    auto meminfo = ordinaryMeminfo();
    meminfo.*field = value;
    return meminfo;
}

struct MappingRow {
    std::string_view name;
    Meminfo meminfo;
    Vmstat vmstat;
    std::uint64_t zramBytes;
    std::optional<VMStatistics> expected;
};

// The split of the ordinary machine's 600 KiB in use, with its page counters.
VMStatistics split(std::uint64_t wired, std::uint64_t compressed, std::uint64_t active,
                   std::uint64_t inactive = 240) {
    return {.wiredBytes = wired * KiB,
            .compressedBytes = compressed * KiB,
            .activeBytes = active * KiB,
            .inactiveBytes = inactive * KiB,
            .pageInBytes = 123 * KiB,
            .pageOutBytes = 45 * KiB};
}

TEST(MemoryMapping, SplitsFreeUsedIntoWiredCompressedAndActive) {
    // Wired: 40 + 5 + 15 + 1 + 2 + 7; active: 600 - wired - compressed.
    const MappingRow rows[] = {
        {"ordinary machine", ordinaryMeminfo(), ordinaryVmstat, 0, split(70, 50, 480)},
        {"zram adds to zswap", ordinaryMeminfo(), ordinaryVmstat, 100 * KiB, split(70, 150, 380)},
        {"kernel before 5.19 has no Zswap line", ordinaryMeminfoWith(&Meminfo::zswap, std::nullopt),
         ordinaryVmstat, 20 * KiB, split(70, 20, 510)},
        {"optional fields missing count as zero",
         Meminfo{.memTotal = 1000 * KiB, .memAvailable = 400 * KiB}, ordinaryVmstat, 0,
         split(0, 0, 600, 0)},
        {"active clamped at zero", ordinaryMeminfoWith(&Meminfo::memAvailable, 950 * KiB),
         ordinaryVmstat, 0, split(70, 50, 0)},
        {"no MemTotal", ordinaryMeminfoWith(&Meminfo::memTotal, std::nullopt), ordinaryVmstat, 0,
         std::nullopt},
        {"no MemAvailable (before 3.14)", ordinaryMeminfoWith(&Meminfo::memAvailable, std::nullopt),
         ordinaryVmstat, 0, std::nullopt},
        {"no pgpgin", ordinaryMeminfo(), Vmstat{.pagedOutBytes = 1}, 0, std::nullopt},
        {"no pgpgout", ordinaryMeminfo(), Vmstat{.pagedInBytes = 1}, 0, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(vmStatisticsFrom(row.meminfo, row.vmstat, row.zramBytes), row.expected);
    }
}

struct SwapRow {
    std::string_view name;
    Meminfo meminfo;
    std::optional<SwapUsage> expected;
};

TEST(MemoryMapping, SwapUsedIsTotalLessFree) {
    const SwapRow rows[] = {
        {"in use",
         {.swapTotal = 800 * KiB, .swapFree = 300 * KiB},
         SwapUsage{.totalBytes = 800 * KiB, .usedBytes = 500 * KiB}},
        {"no swap configured", {.swapTotal = 0, .swapFree = 0}, SwapUsage{}},
        {"free above total",
         {.swapTotal = 100 * KiB, .swapFree = 120 * KiB},
         SwapUsage{.totalBytes = 100 * KiB, .usedBytes = 0}},
        {"no SwapTotal", {.swapFree = 300 * KiB}, std::nullopt},
        {"no SwapFree", {.swapTotal = 800 * KiB}, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(swapUsageFrom(row.meminfo), row.expected);
    }
}

}  // namespace
}  // namespace corvane
