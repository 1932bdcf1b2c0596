#include "Platform/Linux/Hwmon.h"

#include <array>
#include <limits>
#include <system_error>
#include <utility>

#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

constexpr std::array<std::pair<std::string_view, HwmonAttribute::Kind>, 3> sensorTypes = {{
    {"temp", HwmonAttribute::Kind::temperature},
    {"fan", HwmonAttribute::Kind::fan},
    {"power", HwmonAttribute::Kind::power},
}};

// The digits that follow `prefix` in `name` as a number, with nothing after them.
std::optional<std::uint64_t> numberAfter(std::string_view name, std::string_view prefix) {
    if (!name.starts_with(prefix)) {
        return std::nullopt;
    }
    return parseNumber<std::uint64_t>(name.substr(prefix.size()));
}

}  // namespace

std::optional<HwmonAttribute> parseHwmonAttribute(std::string_view fileName) {
    const auto separator = fileName.find('_');
    if (separator == std::string_view::npos || separator + 1 == fileName.size()) {
        return std::nullopt;
    }
    const auto stem = fileName.substr(0, separator);
    for (const auto& [type, kind] : sensorTypes) {
        const auto number = numberAfter(stem, type);
        if (!number || *number < 1 || *number > std::numeric_limits<int>::max()) {
            continue;
        }
        return HwmonAttribute{kind, static_cast<int>(*number), fileName.substr(separator + 1)};
    }
    return std::nullopt;
}

std::optional<std::uint64_t> parseHwmonDirectoryNumber(std::string_view name) {
    return numberAfter(name, "hwmon");
}

std::optional<std::uint64_t> parseRAPLZoneNumber(std::string_view name) {
    return numberAfter(name, "intel-rapl:");
}

}  // namespace corvane
