#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// The memory pressure as the memory panel words it.
enum class MemoryPressureLevel { normal, warning, critical };

/// "normal", "warning" or "critical".
std::string_view memoryPressureLevelRaw(MemoryPressureLevel level);

/// The raw kernel level 2 is a warning and 4 is critical; every other value, and a failed read,
/// is normal.
MemoryPressureLevel memoryPressureLevelFromRaw(std::optional<std::int32_t> raw);

/// Bytes per second between two cumulative byte totals `elapsedSeconds` apart, truncated toward
/// zero. 0 when the total went backwards (a counter reset).
std::uint64_t pagingRate(std::uint64_t previousBytes, std::uint64_t currentBytes,
                         double elapsedSeconds);

/// a + b, held at the largest value instead of wrapping: byte totals must never wrap to small.
std::uint64_t saturatingAdd(std::uint64_t a, std::uint64_t b);

}  // namespace corvane
