#include "CorvaneAgent/SMCDecoder.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "Foundation/SMCKeyData.h"

namespace corvane {
namespace {

TEST(SMCKeyData, EncodesEveryFieldAtItsOffset) {
    SMCKeyData data;
    data.key = 0x234B4559;
    data.version = {0x01, 0x02, 0x03, 0x04, 0x0506};
    data.powerLimit = {0x0708, 0x090A, 0x0B0C0D0E, 0x0F101112, 0x13141516};
    data.keyInfo = {0x1718191A, 0x1B1C1D1E, 0x1F};
    data.result = 0x20;
    data.status = 0x21;
    data.data8 = 0x22;
    data.data32 = 0x23242526;
    for (std::size_t i = 0; i < data.bytes.size(); ++i) {
        data.bytes[i] = static_cast<std::uint8_t>(0x30 + i);
    }
    // The controller's layout, written out by hand: little-endian integers, zero padding at
    // 10-11, 37-39 and 43.
    SMCRecord expected = {
        0x59, 0x45, 0x4B, 0x23, 0x01, 0x02, 0x03, 0x04, 0x06, 0x05, 0x00, 0x00,
        0x08, 0x07, 0x0A, 0x09, 0x0E, 0x0D, 0x0C, 0x0B, 0x12, 0x11, 0x10, 0x0F,
        0x16, 0x15, 0x14, 0x13, 0x1A, 0x19, 0x18, 0x17, 0x1E, 0x1D, 0x1C, 0x1B,
        0x1F, 0x00, 0x00, 0x00, 0x20, 0x21, 0x22, 0x00, 0x26, 0x25, 0x24, 0x23,
    };
    for (std::size_t i = 0; i < 32; ++i) {
        expected[48 + i] = static_cast<std::uint8_t>(0x30 + i);
    }
    EXPECT_EQ(encodeSMCKeyData(data), expected);
    expected[10] = expected[37] = expected[43] = 0xEE;
    EXPECT_EQ(decodeSMCKeyData(expected), data) << "padding must not leak into a field";
}

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
