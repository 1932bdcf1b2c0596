#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The menu-bar meters' readout texts that the unit helpers do not cover, in the compact forms
/// a column of about 30 points holds, formatted in the display locale `localeTag` (a BCP 47
/// tag; an invalid one formats as English). Formatters are built once per locale and kind and
/// kept for the life of the process, since building one costs a hundred times more than
/// using it. Any thread.
namespace corvane::MeterTexts {

/// Shown in place of a value that cannot be read (an en dash).
inline constexpr std::string_view unavailable = "\u2013";

/// Watts with the locale's narrow unit: one decimal below 10 W, whole watts from there on
/// ("4.2W", "4,2 W", "35W"). Absent for a negative or non-finite value.
std::optional<std::string> watts(double watts, std::string_view localeTag);

/// A byte count in decimal multiples, as file sizes are counted, with the locale's narrow unit:
/// kilobytes at least, one decimal below 10 units and whole units from there on ("0kB",
/// "1.2GB", "512MB"). Absent for a negative or non-finite value.
std::optional<std::string> bytes(double bytes, std::string_view localeTag);

/// Revolutions per minute as a whole number without grouping, which is how fan speeds are
/// usually written ("1850"). Absent for a negative or non-finite value.
std::optional<std::string> revolutions(double revolutionsPerMinute, std::string_view localeTag);

}  // namespace corvane::MeterTexts
