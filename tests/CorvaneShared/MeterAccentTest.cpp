#include "CorvaneShared/MeterAccent.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace corvane {
namespace {

TEST(MeterAccent, RawValueGrammar) {
    struct Row {
        const char* raw;
        std::optional<SRGBColor> expected;
    };
    const std::vector<Row> rows = {
        {"amber", SRGBColor{0.90, 0.68, 0.26}},
        {"Amber", std::nullopt},
        {"custom:srgb:1.2,0.5,-3", SRGBColor{1, 0.5, 0}},
        {"custom:srgb:0.1,x,0.2,0.3", SRGBColor{0.1, 0.2, 0.3}},
        {"custom:srgb:0.5,,0.25,0.75", SRGBColor{0.5, 0.25, 0.75}},
        {"custom:srgb:+0.25,1e-1,.5", SRGBColor{0.25, 0.1, 0.5}},
        // Found by fuzzing: more decimals than the raw value keeps read as another colour than
        // the one written back.
        {"custom:srgb:0.10004,0.20006,0.99999", SRGBColor{0.1, 0.2001, 1}},
        {"custom:srgb:0.5,0.5", std::nullopt},
        {"custom:srgb:0.5,0.5,0.5,0.5", std::nullopt},
        {"custom:srgb:nan,0,0", std::nullopt},
        {"custom:srgb:0,inf,0", std::nullopt},
        {"custom:srgb: 0.5,0.5,0.5", std::nullopt},
        {"custom:SRGB:0.5,0.5,0.5", std::nullopt},
        {"", std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.raw);
        std::optional<MeterAccent> accent = MeterAccent::fromRawValue(row.raw);
        ASSERT_EQ(accent.has_value(), row.expected.has_value());
        if (accent) {
            EXPECT_EQ(accent->color(), *row.expected);
        }
    }
}

TEST(MeterAccent, CustomAccentSurvivesItsRawValue) {
    struct Row {
        double red, green, blue;
        const char* raw;
    };
    const std::vector<Row> rows = {
        {0.123456, 1.5, -0.2, "custom:srgb:0.1235,1.0000,0.0000"},
        {-0.00001, 0.99996, 1.0 / 3, "custom:srgb:0.0000,1.0000,0.3333"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.raw);
        MeterAccent accent = MeterAccent::custom(row.red, row.green, row.blue);
        EXPECT_EQ(accent.rawValue(), row.raw);
        EXPECT_EQ(MeterAccent::fromRawValue(accent.rawValue()), accent);
    }
}

}  // namespace
}  // namespace corvane
