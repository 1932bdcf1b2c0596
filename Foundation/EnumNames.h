#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace corvane {

/// One case of an enumeration: the raw text it is stored, printed or read as and, for a case the
/// user picks in the settings, the English key of its title. An enumeration's names are one
/// table of these, in the order of its cases, which serves both directions.
template <typename Enum>
struct EnumName {
    Enum value;
    std::string_view raw;
    std::string_view title = {};
};

/// The case whose raw value is exactly `raw`, tried in table order; absent otherwise.
template <typename Enum, std::size_t N>
constexpr std::optional<Enum> enumFromRaw(const std::array<EnumName<Enum>, N>& names,
                                          std::string_view raw) {
    for (const EnumName<Enum>& name : names) {
        if (name.raw == raw) {
            return name.value;
        }
    }
    return std::nullopt;
}

/// The table row of `value`; every case has one, so the first row only answers a value that
/// was cast from outside the enumeration.
template <typename Enum, std::size_t N>
constexpr const EnumName<Enum>& enumName(const std::array<EnumName<Enum>, N>& names, Enum value) {
    for (const EnumName<Enum>& name : names) {
        if (name.value == value) {
            return name;
        }
    }
    return names.front();
}

}  // namespace corvane
