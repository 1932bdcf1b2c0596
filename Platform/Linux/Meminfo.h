#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// The /proc/meminfo fields the memory readings use, in bytes. Each is absent when the kernel
/// does not print it (MemAvailable before 3.14, SecPageTables before 6.1, Zswap before 5.19,
/// Percpu before 4.16) or when its line is malformed.
struct Meminfo {
    std::optional<std::uint64_t> memTotal = std::nullopt;
    std::optional<std::uint64_t> memAvailable = std::nullopt;
    std::optional<std::uint64_t> buffers = std::nullopt;
    std::optional<std::uint64_t> cached = std::nullopt;
    std::optional<std::uint64_t> sReclaimable = std::nullopt;
    std::optional<std::uint64_t> sUnreclaim = std::nullopt;
    std::optional<std::uint64_t> kernelStack = std::nullopt;
    std::optional<std::uint64_t> pageTables = std::nullopt;
    std::optional<std::uint64_t> secPageTables = std::nullopt;
    std::optional<std::uint64_t> percpu = std::nullopt;
    std::optional<std::uint64_t> unevictable = std::nullopt;
    std::optional<std::uint64_t> zswap = std::nullopt;
    std::optional<std::uint64_t> swapTotal = std::nullopt;
    std::optional<std::uint64_t> swapFree = std::nullopt;

    friend bool operator==(const Meminfo&, const Meminfo&) = default;
};

/// Parses the text of /proc/meminfo. Every value the kernel prints there is in KiB ("kB"),
/// converted to bytes here. A line without its "kB" unit, or whose number does not parse or
/// overflows as bytes, is malformed and leaves its field absent.
[[nodiscard]] Meminfo parseMeminfo(std::string_view text);

}  // namespace corvane
