#pragma once

#include <string_view>

namespace corvane::text {

/// Removes leading and trailing blanks (spaces, tabs), line ends and NUL bytes: the padding
/// kernel files, feeds and configuration lines put around a value. A view into `text`.
[[nodiscard]] constexpr std::string_view trim(std::string_view text) {
    auto isPadding = [](char c) {
        return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\0';
    };
    while (!text.empty() && isPadding(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isPadding(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace corvane::text
