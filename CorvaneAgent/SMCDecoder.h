#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "CorvaneAgent/SensorReadings.h"

// Pure functions that turn controller key codes and raw value bytes into text and numbers.
// Any thread.
namespace corvane::SMCDecoder {

/// The first four bytes of `text` folded most significant first ("#KEY" is 0x234B4559). A
/// shorter text gives a correspondingly shorter code; a longer one is cut at four bytes.
[[nodiscard]] constexpr std::uint32_t keyCode(std::string_view text) {
    std::uint32_t code = 0;
    for (const char c : text.substr(0, 4)) {
        code = code * 256 + static_cast<unsigned char>(c);
    }
    return code;
}

/// The data types the agent decodes. The trailing blank of "flt " belongs to the code.
inline constexpr std::uint32_t floatType = keyCode("flt ");
inline constexpr std::uint32_t fpe2Type = keyCode("fpe2");
inline constexpr std::uint32_t sp78Type = keyCode("sp78");

/// The key's four bytes as text, most significant first; "????" when one of them is not ASCII.
[[nodiscard]] std::string keyString(std::uint32_t key);

/// A fan speed or power figure: "flt " (at least 4 bytes) or "fpe2" (at least 2 bytes).
/// Absent for any other type or too few bytes. No range check.
[[nodiscard]] std::optional<double> number(std::uint32_t dataType,
                                           std::span<const std::uint8_t> bytes);

/// Degrees Celsius from "flt " (at least 4 bytes) or "sp78" (at least 2 bytes); absent unless
/// strictly between 0 and 150, so idle sensors reading 0 drop out.
[[nodiscard]] std::optional<double> temperature(std::uint32_t dataType,
                                                std::span<const std::uint8_t> bytes);

/// What the temperature key measures, by its first two characters (case-sensitive).
[[nodiscard]] SensorCategory category(std::string_view key);

/// Whether a temperature key the controller lists is read at menu-bar scope: the CPU ("Tp",
/// "Te") and GPU ("Tg") keys. Every other key, "Tf" and "TU" among them although they classify
/// as CPU and GPU, is read at full scope only.
[[nodiscard]] bool isMenuBarTemperatureKey(std::string_view key);

}  // namespace corvane::SMCDecoder
