#include "Platform/Linux/Meminfo.h"

#include <array>
#include <cstddef>

#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

struct FieldName {
    std::string_view name;
    std::optional<std::uint64_t> Meminfo::*member;
};

constexpr std::array<FieldName, 14> fieldNames = {{
    {"MemTotal", &Meminfo::memTotal},
    {"MemAvailable", &Meminfo::memAvailable},
    {"Buffers", &Meminfo::buffers},
    {"Cached", &Meminfo::cached},
    {"SReclaimable", &Meminfo::sReclaimable},
    {"SUnreclaim", &Meminfo::sUnreclaim},
    {"KernelStack", &Meminfo::kernelStack},
    {"PageTables", &Meminfo::pageTables},
    {"SecPageTables", &Meminfo::secPageTables},
    {"Percpu", &Meminfo::percpu},
    {"Unevictable", &Meminfo::unevictable},
    {"Zswap", &Meminfo::zswap},
    {"SwapTotal", &Meminfo::swapTotal},
    {"SwapFree", &Meminfo::swapFree},
}};

constexpr std::string_view kibibyteUnit = "kB";

std::optional<std::uint64_t> Meminfo::*memberNamed(std::string_view name) {
    for (const auto& field : fieldNames) {
        if (field.name == name) {
            return field.member;
        }
    }
    return nullptr;
}

// "Name:   12345 kB" → bytes. The unit is required: it is what tells a complete line from
// one cut off in the middle of its number.
std::optional<std::uint64_t> bytesFromValue(std::string_view value) {
    const auto number = text::takeField(value);
    const auto unit = text::takeField(value);
    if (unit != kibibyteUnit || !text::takeField(value).empty()) {
        return std::nullopt;
    }
    return text::bytesFromKibibytes(number);
}

}  // namespace

Meminfo parseMeminfo(std::string_view text) {
    Meminfo meminfo;
    std::size_t found = 0;
    while (!text.empty() && found < fieldNames.size()) {
        const auto line = text::takeLine(text);
        const auto colon = line.find(':');
        if (colon == std::string_view::npos) {
            continue;
        }
        const auto member = memberNamed(line.substr(0, colon));
        if (member == nullptr) {
            continue;
        }
        const auto bytes = bytesFromValue(line.substr(colon + 1));
        if (!bytes) {
            continue;
        }
        if (!(meminfo.*member)) {
            ++found;
        }
        meminfo.*member = bytes;
    }
    return meminfo;
}

}  // namespace corvane
