#pragma once

// Arguments of the programs' command lines as their one-line errors show them.

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <ranges>
#include <string>
#include <string_view>
#include <system_error>

namespace corvane {

/// True when `text` is well-formed UTF-8: no stray continuation byte, truncated sequence,
/// overlong form, surrogate or code point past U+10FFFF.
[[nodiscard]] constexpr bool isValidUTF8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        if (lead < 0x80) {
            ++i;
            continue;
        }
        std::size_t length = 0;
        std::uint32_t point = 0;
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            point = lead & 0x1Fu;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            point = lead & 0x0Fu;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            point = lead & 0x07u;
        } else {
            return false;
        }
        if (text.size() - i < length) {
            return false;
        }
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0u) != 0x80u) {
                return false;
            }
            point = (point << 6) | (next & 0x3Fu);
        }
        const bool overlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
        if (overlong || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) {
            return false;
        }
        i += length;
    }
    return true;
}

/// The first of `arguments` that is not well-formed UTF-8; absent when every one is. Our
/// programs refuse such a command line whole: what they store and show is UTF-8.
template <std::ranges::input_range Arguments>
[[nodiscard]] std::optional<std::string_view> firstArgumentNotUTF8(const Arguments& arguments) {
    const auto found = std::ranges::find_if(
        arguments, [](std::string_view argument) { return !isValidUTF8(argument); });
    if (found == std::ranges::end(arguments)) {
        return std::nullopt;
    }
    return std::string_view(*found);
}

/// True when `path` names something that exists and is not of `kind` (a folder where a file
/// belongs, a FIFO whose open would wait for a writer). A missing path is left to whoever reads
/// or makes it, which says so.
[[nodiscard]] inline bool namesOtherKindThan(const std::filesystem::path& path,
                                             std::filesystem::file_type kind) {
    std::error_code error;
    const auto found = std::filesystem::status(path, error).type();
    return found != std::filesystem::file_type::not_found && found != kind;
}

/// `argument` in single quotes for an error line: control characters (a newline would split
/// the line), the quote itself and bytes of invalid UTF-8 are written as \xNN, so whatever a
/// shell passed, the message stays one readable line.
[[nodiscard]] inline std::string quotedArgument(std::string_view argument) {
    constexpr char hex[] = "0123456789abcdef";
    const bool valid = isValidUTF8(argument);
    std::string quoted = "'";
    for (const char c : argument) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F || c == '\'' || c == '\\' || (byte >= 0x80 && !valid)) {
            quoted += "\\x";
            quoted += hex[byte >> 4];
            quoted += hex[byte & 0xFu];
        } else {
            quoted += c;
        }
    }
    quoted += '\'';
    return quoted;
}

}  // namespace corvane
