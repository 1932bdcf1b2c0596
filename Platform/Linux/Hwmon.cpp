#include "Platform/Linux/Hwmon.h"

#include <array>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

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
    return text::parseUnsigned(name.substr(prefix.size()));
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

std::optional<std::int64_t> parseHwmonInteger(std::string_view text) {
    text = text::trim(text);
    std::int64_t value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::uint64_t> parseHwmonUnsigned(std::string_view text) {
    return text::parseUnsigned(text::trim(text));
}

std::optional<std::uint64_t> parseHwmonDirectoryNumber(std::string_view name) {
    return numberAfter(name, "hwmon");
}

std::optional<std::uint64_t> parseRAPLZoneNumber(std::string_view name) {
    return numberAfter(name, "intel-rapl:");
}

}  // namespace corvane
