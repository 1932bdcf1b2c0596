#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "Foundation/NumberParsing.h"
#include "Foundation/TextTrimming.h"

// Small scanning helpers shared by the kernel-file parsers. They never allocate: every piece
// they hand out is a view into the text being parsed. Numbers are read with parseNumber
// (Foundation/NumberParsing.h), and
// values are trimmed with text::trim (Foundation/TextTrimming.h).
namespace corvane::text {

/// True for the separators the kernel puts between fields: spaces and tabs.
[[nodiscard]] constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// Splits off the first line of `text` (without its newline) and advances `text` past it.
/// The last line needs no newline.
[[nodiscard]] constexpr std::string_view takeLine(std::string_view& text) {
    const auto end = text.find('\n');
    if (end == std::string_view::npos) {
        const auto line = text;
        text = {};
        return line;
    }
    const auto line = text.substr(0, end);
    text.remove_prefix(end + 1);
    return line;
}

/// Splits off the next blank-separated field of `line` and advances `line` past it; empty
/// when no field is left.
[[nodiscard]] constexpr std::string_view takeField(std::string_view& line) {
    std::size_t start = 0;
    while (start < line.size() && isBlank(line[start])) {
        ++start;
    }
    std::size_t end = start;
    while (end < line.size() && !isBlank(line[end])) {
        ++end;
    }
    const auto field = line.substr(start, end - start);
    line.remove_prefix(end);
    return field;
}

/// A decimal count of KiB, as /proc/meminfo and /proc/vmstat print them, in bytes; absent when
/// `number` is not a whole unsigned number or the bytes do not fit in 64 bits.
[[nodiscard]] inline std::optional<std::uint64_t> bytesFromKibibytes(std::string_view number) {
    const auto kibibytes = parseNumber<std::uint64_t>(number);
    constexpr std::uint64_t limit = UINT64_MAX / 1024;
    if (!kibibytes || *kibibytes > limit) {
        return std::nullopt;
    }
    return *kibibytes * 1024;
}

}  // namespace corvane::text
