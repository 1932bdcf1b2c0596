#include "Foundation/NumberParsing.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <optional>
#include <string_view>

namespace corvane {
namespace {

template <typename Number>
struct Row {
    std::string_view text;
    std::optional<Number> expected;
};

TEST(NumberParsing, IntegersTakeTheWholeTextWithinTheirRange) {
    const Row<std::int64_t> signedRows[] = {
        {"45500", 45500},
        {"-12500", -12500},
        {"", std::nullopt},
        {"+3", std::nullopt},
        {" 7", std::nullopt},
        {"7\n", std::nullopt},
        {"12abc", std::nullopt},
        {"0x1F", std::nullopt},
        {"9223372036854775807", INT64_MAX},
        {"9223372036854775808", std::nullopt},
    };
    for (const auto& row : signedRows) {
        EXPECT_EQ(parseNumber<std::int64_t>(row.text), row.expected) << row.text;
    }
    const Row<std::uint32_t> unsignedRows[] = {
        {"4294967295", UINT32_MAX},
        {"4294967296", std::nullopt},
        {"-1", std::nullopt},
        {"1.5", std::nullopt},
    };
    for (const auto& row : unsignedRows) {
        EXPECT_EQ(parseNumber<std::uint32_t>(row.text), row.expected) << row.text;
    }
}

TEST(NumberParsing, FloatingPointIsFiniteAndFollowsTheFormat) {
    const Row<double> generalRows[] = {
        {"0.5", 0.5},          {"-2", -2.0},          {"1e-2", 0.01},
        {"nan", std::nullopt}, {"inf", std::nullopt}, {"1,5", std::nullopt},
        {".", std::nullopt},   {"", std::nullopt},    {"1e999", std::nullopt},
    };
    for (const auto& row : generalRows) {
        EXPECT_EQ(parseNumber<double>(row.text), row.expected) << row.text;
    }
    // The kernel writes its fractions without an exponent.
    EXPECT_EQ(parseNumber<double>("14.23", std::chars_format::fixed), 14.23);
    EXPECT_EQ(parseNumber<double>("1e3", std::chars_format::fixed), std::nullopt);
    // Where a non-finite value is a number to be refused later, it parses.
    const auto nan =
        parseNumber<double>("NaN", std::chars_format::general, NonFiniteNumbers::accepted);
    ASSERT_TRUE(nan);
    EXPECT_TRUE(std::isnan(*nan));
    EXPECT_EQ(parseNumber<double>("-inf", std::chars_format::general, NonFiniteNumbers::accepted),
              -HUGE_VAL);
}

}  // namespace
}  // namespace corvane
