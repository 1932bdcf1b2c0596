#pragma once

#include <cstdint>
#include <optional>

#include "Platform/Linux/Meminfo.h"
#include "Platform/Linux/Vmstat.h"
#include "Platform/SystemStatistics.h"

namespace corvane {

/// Maps Linux's memory accounting onto the wired / compressed / active / inactive composition
/// (docs/linux-port.md gives the reasons), in bytes:
/// - wired: SUnreclaim + KernelStack + PageTables + SecPageTables + Percpu + Unevictable;
/// - compressed: Zswap + `zramBytes` (RAM held by zram devices);
/// - active: MemTotal − MemAvailable − wired − compressed, at least 0, so that wired +
///   compressed + active is procps free's "used";
/// - inactive: Buffers + Cached + SReclaimable, free's "buff/cache";
/// - page-ins and page-outs: pgpgin and pgpgout.
/// Optional fields that are missing count as 0. Absent when MemTotal, MemAvailable, pgpgin or
/// pgpgout is missing.
[[nodiscard]] std::optional<VMStatistics> vmStatisticsFrom(const Meminfo& meminfo,
                                                           const Vmstat& vmstat,
                                                           std::uint64_t zramBytes);

/// Swap in bytes: used = SwapTotal − SwapFree, at least 0. Absent unless both are present.
[[nodiscard]] std::optional<SwapUsage> swapUsageFrom(const Meminfo& meminfo);

}  // namespace corvane
