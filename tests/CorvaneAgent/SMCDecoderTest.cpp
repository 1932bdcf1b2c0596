#include "CorvaneAgent/SMCDecoder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace corvane {
namespace {

TEST(SMCDecoder, KeyCodesFoldMostSignificantFirst) {
    EXPECT_EQ(SMCDecoder::keyCode("#KEY"), 0x234B4559u);
    EXPECT_EQ(SMCDecoder::keyCode("TC0"), 0x544330u);
    EXPECT_EQ(SMCDecoder::keyCode("TC0PX"), SMCDecoder::keyCode("TC0P"));
    EXPECT_EQ(SMCDecoder::keyString(0x234B4559), "#KEY");
    EXPECT_EQ(SMCDecoder::keyString(SMCDecoder::floatType), "flt ");
    EXPECT_EQ(SMCDecoder::keyString(0x5443FF50), "????");
}

struct DecodeRow {
    std::string_view name;
    std::string_view type;
    std::vector<std::uint8_t> bytes;
    std::optional<double> expected;
};

TEST(SMCDecoder, TemperaturesArePlausibleOrAbsent) {
    const DecodeRow rows[] = {
        {"sp78", "sp78", {0x2D, 0x80}, 45.5},
        {"sp78 minus one", "sp78", {0xFF, 0x00}, std::nullopt},
        {"sp78 high bit is the sign", "sp78", {0x96, 0x00}, std::nullopt},
        {"sp78 largest", "sp78", {0x7F, 0xFF}, 32767.0 / 256},
        {"sp78 idle zero", "sp78", {0x00, 0x00}, std::nullopt},
        {"sp78 one byte", "sp78", {0x2D}, std::nullopt},
        {"flt little-endian", "flt ", {0x66, 0xE6, 0x15, 0x43}, double{149.9f}},
        {"flt at the limit", "flt ", {0x00, 0x00, 0x16, 0x43}, std::nullopt},
        {"flt NaN", "flt ", {0x00, 0x00, 0xC0, 0x7F}, std::nullopt},
        {"flt three bytes", "flt ", {0x00, 0x34, 0x42}, std::nullopt},
        {"fan type", "fpe2", {0x2D, 0x80}, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(SMCDecoder::temperature(SMCDecoder::keyCode(row.type), row.bytes), row.expected);
    }
}

TEST(SMCDecoder, NumbersAreFloatOrFpe2WithoutRangeCheck) {
    const DecodeRow rows[] = {
        {"fpe2", "fpe2", {0x1F, 0x40}, 2000.0},
        {"fpe2 one byte", "fpe2", {0x1F}, std::nullopt},
        {"flt", "flt ", {0x00, 0x00, 0x7A, 0x44}, 1000.0},
        {"flt negative", "flt ", {0x00, 0x00, 0x80, 0xBF}, -1.0},
        {"flt three bytes", "flt ", {0x00, 0x7A, 0x44}, std::nullopt},
        {"temperature type", "sp78", {0x2D, 0x80}, std::nullopt},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(SMCDecoder::number(SMCDecoder::keyCode(row.type), row.bytes), row.expected);
    }
}

TEST(SMCDecoder, CategoryComesFromTheFirstTwoCharacters) {
    const std::pair<std::string_view, SensorCategory> rows[] = {
        {"Tp01", SensorCategory::cpu},     {"Te05", SensorCategory::cpu},
        {"Tf04", SensorCategory::cpu},     {"Tg0D", SensorCategory::gpu},
        {"TU0P", SensorCategory::gpu},     {"Tm02", SensorCategory::memory},
        {"TM0P", SensorCategory::memory},  {"TN0D", SensorCategory::storage},
        {"TH0a", SensorCategory::storage}, {"TB0T", SensorCategory::battery},
        {"TaLP", SensorCategory::ambient}, {"TA0V", SensorCategory::ambient},
        {"TC0P", SensorCategory::other},   {"Ts0P", SensorCategory::other},
        {"TG0D", SensorCategory::other},   {"tp01", SensorCategory::other},
        {"T", SensorCategory::other},
    };
    for (const auto& [key, expected] : rows) {
        EXPECT_EQ(SMCDecoder::category(key), expected) << key;
    }
}

}  // namespace
}  // namespace corvane
