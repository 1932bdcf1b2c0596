#pragma once

// What every harness shares: the entry point libFuzzer calls, and the check that turns a
// broken invariant into a crash libFuzzer records, with the input that caused it.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace corvane::fuzz {

/// Aborts with `what` on standard error unless `condition` holds. A plain abort (not an
/// assert) so that a release build of a harness still checks.
inline void require(bool condition, const char* what) {
    if (!condition) {
        std::fprintf(stderr, "invariant broken: %s\n", what);
        std::abort();
    }
}

/// The input as text; kernel files, JSON and command lines are all bytes without a terminator.
inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// True when `part` lies inside `whole`: a parser that hands out views must hand out views
/// into the text it was given.
inline bool isViewInto(std::string_view part, std::string_view whole) {
    if (part.empty()) {
        return true;
    }
    const auto* begin = whole.data();
    return part.data() >= begin && part.data() + part.size() <= begin + whole.size();
}

/// True when `text` is well-formed UTF-8 (no overlong forms, surrogates or code points past
/// U+10FFFF), as the names shown to a user must be.
inline bool isValidUTF8(std::string_view text) {
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        std::size_t length = 0;
        std::uint32_t point = 0;
        if (lead < 0x80) {
            ++i;
            continue;
        }
        if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            point = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            point = lead & 0x0F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            point = lead & 0x07;
        } else {
            return false;
        }
        if (i + length > text.size()) {
            return false;
        }
        for (std::size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80) {
                return false;
            }
            point = (point << 6) | (next & 0x3F);
        }
        const bool overlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
        if (overlong || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) {
            return false;
        }
        i += length;
    }
    return true;
}

/// The input split at NUL bytes, as a command line's arguments arrive: a harness of a command
/// line takes "--refreshes\0005" as two arguments.
inline std::vector<std::string_view> argumentsOf(std::string_view text) {
    std::vector<std::string_view> arguments;
    while (!text.empty()) {
        const auto end = text.find('\0');
        arguments.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + 1);
    }
    return arguments;
}

}  // namespace corvane::fuzz
