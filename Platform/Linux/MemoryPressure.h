#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// The ten-second averages of /proc/pressure/memory: the percentage (0...100) of wall time in
/// which at least one task ("some") or every non-idle task at once ("full") was stalled
/// waiting for memory. Each is absent when its line is missing or malformed.
struct MemoryPressure {
    std::optional<double> someAvg10 = std::nullopt;
    std::optional<double> fullAvg10 = std::nullopt;

    friend bool operator==(const MemoryPressure&, const MemoryPressure&) = default;
};

/// Parses the text of a pressure stall file ("some avg10=0.00 avg60=0.00 avg300=0.00 total=0").
[[nodiscard]] MemoryPressure parseMemoryPressure(std::string_view text);

/// Stall share, in percent of the last ten seconds, from which a level is raised.
inline constexpr double pressureStallThresholdPercent = 10.0;

/// The raw pressure level (RawPressureLevel): critical when every task stalled at least 10 % of
/// the last ten seconds, else warning when some task did, else normal. Absent unless both
/// averages are present: the memory file has carried both lines since PSI appeared (4.20).
[[nodiscard]] std::optional<std::int32_t> rawPressureLevelFrom(const MemoryPressure& pressure);

}  // namespace corvane
