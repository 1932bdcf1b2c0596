#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "Platform/SystemStatistics.h"

namespace corvane {

/// The tick columns of one "cpu" or "cpuN" line of /proc/stat, in USER_HZ clock ticks since
/// boot. Columns an older kernel does not print yet are 0. guest and guest_nice are left out:
/// the kernel already counts them inside user and nice.
struct CPUTimes {
    std::uint64_t user = 0;
    std::uint64_t nice = 0;
    std::uint64_t system = 0;
    std::uint64_t idle = 0;
    std::uint64_t iowait = 0;
    std::uint64_t irq = 0;
    std::uint64_t softirq = 0;
    std::uint64_t steal = 0;

    friend bool operator==(const CPUTimes&, const CPUTimes&) = default;
};

/// The numbers after a cpu line's label. Absent when fewer than the first four (user, nice,
/// system, idle) are there or when one of the columns used is not a number.
[[nodiscard]] std::optional<CPUTimes> parseCPUTimes(std::string_view columns);

/// The whole-machine record: system time includes interrupts and stolen time, idle time
/// includes I/O wait. Each sum is taken in 64 bits and only its low 32 bits are kept, as the
/// record's counters are 32 bits wide and wrap.
[[nodiscard]] HostCPULoad hostCPULoadFrom(const CPUTimes& times);

/// One CPU's record, with the same grouping as hostCPULoadFrom, in 64 bits.
[[nodiscard]] ProcessorLoad processorLoadFrom(const CPUTimes& times);

/// Parses the text of /proc/stat: the "cpu" line into the host record, the "cpuN" lines into
/// the processor list in file order with their numbers N (an offline CPU has no line). A
/// malformed line is skipped; without a usable "cpu" line the host record is absent. The lists
/// are built in `storage`, so a caller that passes the previous sample back allocates nothing.
/// Parsing stops after the cpu lines, which the kernel prints first.
[[nodiscard]] CPULoadSample parseProcStat(std::string_view text, CPULoadSample storage = {});

}  // namespace corvane
