#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Pure parsers for the names and values of the kernel's hardware-monitoring (hwmon) and
// powercap files (Documentation/ABI/testing/sysfs-class-hwmon, sysfs-class-powercap).
namespace corvane {

/// A sensor file's name taken apart: "temp3_input" is a temperature, number 3, item "input".
struct HwmonAttribute {
    enum class Kind { temperature, fan, power };
    Kind kind = Kind::temperature;
    int number = 0;
    /// What the file holds: "input", "label", "min", "max", "average", …
    std::string_view item;

    friend bool operator==(const HwmonAttribute&, const HwmonAttribute&) = default;
};

/// `fileName` as temp<N>_<item>, fan<N>_<item> or power<N>_<item> with N ≥ 1; absent for every
/// other file of a chip's directory (in0_input, pwm1, name, uevent).
[[nodiscard]] std::optional<HwmonAttribute> parseHwmonAttribute(std::string_view fileName);

/// N of a class directory entry "hwmon<N>"; absent for anything else.
[[nodiscard]] std::optional<std::uint64_t> parseHwmonDirectoryNumber(std::string_view name);

/// N of a top-level RAPL zone "intel-rapl:<N>"; absent for its subzones ("intel-rapl:0:1"),
/// the control type itself ("intel-rapl") and the MMIO copy of the package zone
/// ("intel-rapl-mmio:0"), which counts the same energy again.
[[nodiscard]] std::optional<std::uint64_t> parseRAPLZoneNumber(std::string_view name);

}  // namespace corvane
