#pragma once

// What every harness shares: the entry point libFuzzer calls, and the check that turns a
// broken invariant into a crash libFuzzer records, with the input that caused it.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <vector>

#include "Foundation/ArgumentText.h"

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

/// Names shown to a user must be well-formed UTF-8, as the command lines check too.
using corvane::isValidUTF8;

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
