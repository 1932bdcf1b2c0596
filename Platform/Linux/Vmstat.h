#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// The /proc/vmstat counters the memory readings use: cumulative bytes read from and written
/// to block devices since boot. Each is absent when its line is missing or malformed.
struct Vmstat {
    std::optional<std::uint64_t> pagedInBytes = std::nullopt;
    std::optional<std::uint64_t> pagedOutBytes = std::nullopt;

    friend bool operator==(const Vmstat&, const Vmstat&) = default;
};

/// Parses the text of /proc/vmstat ("name value" lines). pgpgin and pgpgout are in KiB, not in
/// pages as their names suggest, and are converted to bytes here.
[[nodiscard]] Vmstat parseVmstat(std::string_view text);

}  // namespace corvane
