#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace corvane {

/// Parses the text of /proc/loadavg ("0.01 0.07 0.03 1/84 3877"): the 1, 5 and 15 minute load
/// averages. Absent unless all three are numbers.
[[nodiscard]] std::optional<std::array<double, 3>> parseLoadavg(std::string_view text);

}  // namespace corvane
