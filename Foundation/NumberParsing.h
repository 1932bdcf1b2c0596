#pragma once

#include <charconv>
#include <cmath>
#include <concepts>
#include <optional>
#include <string_view>
#include <system_error>

namespace corvane {

/// How a floating-point parse treats "nan", "inf" and "infinity" (any case, either sign).
enum class NonFiniteNumbers { refused, accepted };

/// The whole of `text` as an integer of type `Integer`, in decimal; absent for anything else:
/// empty text, blanks, a '+', a '-' for an unsigned type, trailing characters, a value outside
/// the type's range. The same in every locale.
template <std::integral Integer>
requires(!std::same_as<Integer, bool>)
    [[nodiscard]] std::optional<Integer> parseNumber(std::string_view text) {
    Integer value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    return value;
}

/// The whole of `text` as a floating-point number written in `format` (by default with or
/// without an exponent; `std::chars_format::fixed` refuses one); absent for anything else, as
/// for integers, and for a non-finite value unless `nonFinite` accepts it. Independent of the C
/// locale: the decimal mark is always '.'.
template <std::floating_point Real>
[[nodiscard]] std::optional<Real> parseNumber(
    std::string_view text, std::chars_format format = std::chars_format::general,
    NonFiniteNumbers nonFinite = NonFiniteNumbers::refused) {
    Real value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, format);
    if (error != std::errc{} || stop != end) {
        return std::nullopt;
    }
    if (nonFinite == NonFiniteNumbers::refused && !std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

}  // namespace corvane
