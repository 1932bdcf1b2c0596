#include "Platform/Linux/MemoryMapping.h"

#include <initializer_list>
#include <limits>

namespace corvane {

namespace {

// Sums that stop at the largest value instead of wrapping: a corrupt field must not turn a
// huge total into a small one.
std::uint64_t saturatingSum(std::initializer_list<std::uint64_t> values) {
    std::uint64_t sum = 0;
    for (auto value : values) {
        if (value > std::numeric_limits<std::uint64_t>::max() - sum) {
            return std::numeric_limits<std::uint64_t>::max();
        }
        sum += value;
    }
    return sum;
}

std::uint64_t clampedDifference(std::uint64_t minuend, std::uint64_t subtrahend) {
    return minuend > subtrahend ? minuend - subtrahend : 0;
}

}  // namespace

std::optional<VMStatistics> vmStatisticsFrom(const Meminfo& meminfo, const Vmstat& vmstat,
                                             std::uint64_t zramBytes) {
    if (!meminfo.memTotal || !meminfo.memAvailable || !vmstat.pagedInBytes ||
        !vmstat.pagedOutBytes) {
        return std::nullopt;
    }
    // Memory the kernel holds for itself or can never reclaim: unreclaimable slab, kernel
    // stacks, page tables (the processes', and the secondary ones of KVM and the IOMMU),
    // per-CPU areas, and mlocked / ramfs / locked shared-memory pages.
    const auto wired = saturatingSum({
        meminfo.sUnreclaim.value_or(0),
        meminfo.kernelStack.value_or(0),
        meminfo.pageTables.value_or(0),
        meminfo.secPageTables.value_or(0),
        meminfo.percpu.value_or(0),
        meminfo.unevictable.value_or(0),
    });
    // The zswap pool and zram's compressed store both sit in RAM and count towards neither
    // the page cache nor slab, so MemAvailable already treats them as in use.
    const auto compressed = saturatingSum({meminfo.zswap.value_or(0), zramBytes});
    // MemTotal − MemAvailable is what procps free calls "used"; the rest of it, after the two
    // parts above, is what applications hold.
    const auto used = clampedDifference(*meminfo.memTotal, *meminfo.memAvailable);
    const auto active = clampedDifference(used, saturatingSum({wired, compressed}));
    // free's "buff/cache". Shared memory (tmpfs) is inside Cached although it cannot be
    // dropped; MemAvailable counts it as used, so it shows in both rows, as it does in free.
    const auto inactive = saturatingSum({
        meminfo.buffers.value_or(0),
        meminfo.cached.value_or(0),
        meminfo.sReclaimable.value_or(0),
    });
    return VMStatistics{
        .wiredBytes = wired,
        .compressedBytes = compressed,
        .activeBytes = active,
        .inactiveBytes = inactive,
        .pageInBytes = *vmstat.pagedInBytes,
        .pageOutBytes = *vmstat.pagedOutBytes,
    };
}

std::optional<SwapUsage> swapUsageFrom(const Meminfo& meminfo) {
    if (!meminfo.swapTotal || !meminfo.swapFree) {
        return std::nullopt;
    }
    return SwapUsage{
        .totalBytes = *meminfo.swapTotal,
        .usedBytes = clampedDifference(*meminfo.swapTotal, *meminfo.swapFree),
    };
}

}  // namespace corvane
