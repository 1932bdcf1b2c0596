#pragma once

#include <optional>
#include <string_view>

namespace corvane::testing {

/// One named row of a parser's table-driven test: the text, and what it parses to (absent when
/// the parser must refuse it).
template <typename Value>
struct ParserRow {
    std::string_view name;
    std::string_view text;
    std::optional<Value> expected;
};

}  // namespace corvane::testing
