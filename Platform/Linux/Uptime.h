#pragma once

#include <optional>
#include <string_view>

namespace corvane {

/// Parses the text of /proc/uptime ("306.47 567.55"): its first field, the seconds since boot.
/// The second field, idle time summed over CPUs, is not used.
[[nodiscard]] std::optional<double> parseUptime(std::string_view text);

}  // namespace corvane
