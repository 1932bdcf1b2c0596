#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// What the process list takes from /proc/[pid]/io: the bytes the process caused to be read
/// from and written to storage (page-cache hits and pipe or socket traffic excluded).
struct ProcPidIo {
    std::uint64_t readBytes = 0;
    std::uint64_t writeBytes = 0;

    friend bool operator==(const ProcPidIo&, const ProcPidIo&) = default;
};

/// Parses the text of /proc/[pid]/io ("read_bytes: 4096" lines). Absent unless both
/// `read_bytes` and `write_bytes` are there and are numbers.
[[nodiscard]] std::optional<ProcPidIo> parseProcPidIo(std::string_view text);

}  // namespace corvane
