#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// One performance level of the processor as the platform's topology source describes it.
struct PerformanceLevel {
    /// Logical CPUs in the level; absent when unreadable.
    std::optional<std::int64_t> logicalCPUs;
    /// The level's name; absent when the source has none.
    std::optional<std::string> name;
    /// The kernel's numbers of the level's CPUs, ascending; empty when the source does not say
    /// which CPUs they are.
    std::vector<std::uint32_t> cpus;

    friend bool operator==(const PerformanceLevel&, const PerformanceLevel&) = default;
};

/// The processor's performance levels, fastest (level 0) first. `count` is how many levels the
/// source reports; a level at or beyond the end of `levels` is one whose figures are unreadable.
struct PerformanceLevels {
    /// Absent when the platform reports no performance levels.
    std::optional<std::int64_t> count;
    std::vector<PerformanceLevel> levels;

    friend bool operator==(const PerformanceLevels&, const PerformanceLevels&) = default;
};

}  // namespace corvane
