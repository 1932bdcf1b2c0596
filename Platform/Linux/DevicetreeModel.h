#pragma once

#include <optional>
#include <string_view>

namespace corvane {

/// Parses the device tree's board model (<sysfs>/firmware/devicetree/base/model), as ARM
/// machines name themselves ("Raspberry Pi 4 Model B Rev 1.4"). The property is a
/// NUL-terminated string; trailing NULs, line ends and blanks are dropped. Absent when nothing
/// is left.
[[nodiscard]] std::optional<std::string_view> parseDevicetreeModel(std::string_view text);

}  // namespace corvane
