#include "CorvaneAgent/SMCDecoder.h"

#include <bit>

#include "CorvaneAgent/SensorBounds.h"

namespace corvane::SMCDecoder {

namespace {

// The controller stores "flt " values in its own little-endian order but its fixed-point types
// big-endian; both readings are deliberate.
float littleEndianFloat(std::span<const std::uint8_t> bytes) {
    const auto bits =
        static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
        static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
    return std::bit_cast<float>(bits);
}

std::uint16_t bigEndianU16(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

}  // namespace

std::string keyString(std::uint32_t key) {
    std::string text(4, '\0');
    for (int i = 0; i < 4; ++i) {
        const auto byte = static_cast<std::uint8_t>(key >> (8 * (3 - i)));
        if (byte >= 0x80) {
            return "????";
        }
        text[static_cast<std::size_t>(i)] = static_cast<char>(byte);
    }
    return text;
}

std::optional<double> number(std::uint32_t dataType, std::span<const std::uint8_t> bytes) {
    if (dataType == floatType && bytes.size() >= 4) {
        return littleEndianFloat(bytes);
    }
    if (dataType == fpe2Type && bytes.size() >= 2) {
        // Unsigned with two fractional bits.
        return bigEndianU16(bytes) / 4.0;
    }
    return std::nullopt;
}

std::optional<double> temperature(std::uint32_t dataType, std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 2) {
        return std::nullopt;
    }
    double celsius = 0;
    if (dataType == floatType && bytes.size() >= 4) {
        celsius = littleEndianFloat(bytes);
    } else if (dataType == sp78Type) {
        // Signed with eight fractional bits: the high bit is the sign.
        celsius = static_cast<std::int16_t>(bigEndianU16(bytes)) / 256.0;
    } else {
        return std::nullopt;
    }
    if (!SensorBounds::isPlausibleCelsius(celsius)) {
        return std::nullopt;
    }
    return celsius;
}

SensorCategory category(std::string_view key) {
    const auto prefix = key.substr(0, 2);
    if (prefix == "Tp" || prefix == "Te" || prefix == "Tf") {
        return SensorCategory::cpu;
    }
    if (prefix == "Tg" || prefix == "TU") {
        return SensorCategory::gpu;
    }
    if (prefix == "Tm" || prefix == "TM") {
        return SensorCategory::memory;
    }
    if (prefix == "TN" || prefix == "TH") {
        return SensorCategory::storage;
    }
    if (prefix == "TB") {
        return SensorCategory::battery;
    }
    if (prefix == "Ta" || prefix == "TA") {
        return SensorCategory::ambient;
    }
    return SensorCategory::other;
}

bool isMenuBarTemperatureKey(std::string_view key) {
    return key.starts_with("Tp") || key.starts_with("Te") || key.starts_with("Tg");
}

}  // namespace corvane::SMCDecoder
