#pragma once

#include <optional>
#include <string_view>

namespace corvane {

/// Parses the text of /proc/cpuinfo: the value of the first "model name" line, without the
/// padding around it (a view into `text`). Absent when there is none or it is blank, as on
/// arm64, whose cpuinfo names no model.
[[nodiscard]] std::optional<std::string_view> parseCpuinfoModelName(std::string_view text);

}  // namespace corvane
