#pragma once

#include <charconv>
#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

// Small scanning helpers shared by the kernel-file parsers. They never allocate: every piece
// they hand out is a view into the text being parsed.
namespace corvane::text {

/// True for the separators the kernel puts between fields: spaces and tabs.
[[nodiscard]] constexpr bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// Removes leading and trailing blanks, line ends and NUL bytes.
[[nodiscard]] constexpr std::string_view trim(std::string_view text) {
    auto isPadding = [](char c) { return isBlank(c) || c == '\n' || c == '\r' || c == '\0'; };
    while (!text.empty() && isPadding(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isPadding(text.back())) {
        text.remove_suffix(1);
    }
    return text;
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

/// The whole of `field` as an unsigned decimal number; absent for anything else (signs,
/// fractions, trailing characters, values beyond 64 bits).
[[nodiscard]] inline std::optional<std::uint64_t> parseUnsigned(std::string_view field) {
    std::uint64_t value = 0;
    const char* end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return value;
}

/// The whole of `field` as a signed decimal number; absent for anything else.
[[nodiscard]] inline std::optional<std::int64_t> parseSigned(std::string_view field) {
    std::int64_t value = 0;
    const char* end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return value;
}

/// The whole of `field` as a finite decimal number; absent for anything else. Independent of
/// the C locale, which matters because the kernel always writes a '.'.
[[nodiscard]] inline std::optional<double> parseDecimal(std::string_view field) {
    double value = 0;
    const char* end = field.data() + field.size();
    const auto [stop, error] = std::from_chars(field.data(), end, value, std::chars_format::fixed);
    if (error != std::errc{} || stop != end || !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

/// `kibibytes` × 1024, absent when that does not fit in 64 bits.
[[nodiscard]] constexpr std::optional<std::uint64_t> bytesFromKibibytes(std::uint64_t kibibytes) {
    constexpr std::uint64_t limit = UINT64_MAX / 1024;
    if (kibibytes > limit) {
        return std::nullopt;
    }
    return kibibytes * 1024;
}

}  // namespace corvane::text
