#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>

#include "Platform/ProcessTable.h"

namespace corvane {

/// "btime" of /proc/stat: when the machine booted, in seconds since 1970; absent when the line
/// is missing or not a number.
[[nodiscard]] std::optional<std::int64_t> parseBootTime(std::string_view procStat);

/// The owner's real user id from the "Uid:" line of /proc/<pid>/status; absent when the line is
/// missing or not a number.
[[nodiscard]] std::optional<std::uint32_t> parseStatusUid(std::string_view status);

/// The process table read from procfs under `procfs`. A process's owner is its status file's
/// real uid (the directory's owner when status cannot be read); its executable is the `exe`
/// link, or the first word of `cmdline` when the link cannot be read (another user's process,
/// a kernel thread, a tree copied without links); its start time is stat's starttime after
/// /proc/stat's boot time.
class LinuxProcessTable final : public ProcessTable {
public:
    /// `ticksPerSecond`: the unit of starttime (USER_HZ); 0 asks sysconf(_SC_CLK_TCK).
    explicit LinuxProcessTable(std::filesystem::path procfs = "/proc", long ticksPerSecond = 0);

    std::vector<ProcessRecord> processesOf(std::uint32_t user) const override;

private:
    std::filesystem::path procfs;
    long ticksPerSecond;
};

}  // namespace corvane
