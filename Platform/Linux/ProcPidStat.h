#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// What the process list takes from one /proc/[pid]/stat line.
struct ProcPidStat {
    /// The command name as the kernel keeps it: raw bytes, possibly empty, not necessarily UTF-8.
    /// A view into the parsed text.
    std::string_view comm;
    /// utime + stime: CPU time in user and kernel mode, in clock ticks (USER_HZ), all threads.
    std::uint64_t cpuTicks = 0;
    /// starttime: when the process started, in clock ticks after boot.
    std::uint64_t startTime = 0;
    /// rss, the resident set size in pages. Since the kernel keeps these counters per CPU, stat
    /// prints a quick reading that leaves out the per-CPU remainders, unlike statm.
    std::uint64_t residentPages = 0;

    friend bool operator==(const ProcPidStat&, const ProcPidStat&) = default;
};

/// Parses the text of /proc/[pid]/stat. The name is everything between the first '(' and the
/// last ')', since a process may put spaces and parentheses in its own name. Absent when either
/// parenthesis is missing, or when utime, stime, starttime or rss is missing or not a number.
[[nodiscard]] std::optional<ProcPidStat> parseProcPidStat(std::string_view text);

/// The name a process is shown under: `comm` as UTF-8, each invalid byte sequence replaced by
/// U+FFFD (any process can rename itself to arbitrary bytes); "PID <pid>" when `comm` is empty.
[[nodiscard]] std::string processName(std::string_view comm, std::int32_t pid);

}  // namespace corvane
