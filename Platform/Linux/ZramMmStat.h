#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {

/// Parses a zram device's mm_stat (<sysfs>/block/zramN/mm_stat): its third field,
/// mem_used_total, the bytes of RAM the device's compressed store occupies, allocator overhead
/// included. Absent when there are fewer than three fields or the third is not a number.
[[nodiscard]] std::optional<std::uint64_t> parseZramMemUsedTotal(std::string_view text);

}  // namespace corvane
