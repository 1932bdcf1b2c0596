#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// Parses the text of /proc/[pid]/statm ("size resident shared text lib data dt", in pages):
/// the resident set size in pages. Absent when the first two fields are not both numbers.
[[nodiscard]] std::optional<std::uint64_t> parseProcPidStatmResidentPages(std::string_view text);

}  // namespace corvane
