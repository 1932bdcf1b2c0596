#include "Platform/Linux/Hwmon.h"

#include <gtest/gtest.h>

#include <string>

namespace corvane {
namespace {

using Kind = HwmonAttribute::Kind;

TEST(Hwmon, TakesSensorFileNamesApart) {
    struct Row {
        std::string_view fileName;
        std::optional<HwmonAttribute> expected;
    };
    const Row rows[] = {
        {"temp1_input", HwmonAttribute{Kind::temperature, 1, "input"}},
        {"temp18_crit_alarm", HwmonAttribute{Kind::temperature, 18, "crit_alarm"}},
        {"fan2_min", HwmonAttribute{Kind::fan, 2, "min"}},
        {"power1_average", HwmonAttribute{Kind::power, 1, "average"}},
        {"in0_input", std::nullopt},
        {"temp0_input", std::nullopt},
        {"temp_input", std::nullopt},
        {"temp1x_input", std::nullopt},
        {"temp1_", std::nullopt},
        {"pwm1", std::nullopt},
        {"name", std::nullopt},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(parseHwmonAttribute(row.fileName), row.expected) << row.fileName;
    }
}

TEST(Hwmon, ParsesDirectoryNames) {
    EXPECT_EQ(parseHwmonDirectoryNumber("hwmon12"), 12u);
    EXPECT_EQ(parseHwmonDirectoryNumber("hwmon"), std::nullopt);
    EXPECT_EQ(parseRAPLZoneNumber("intel-rapl:1"), 1u);
    EXPECT_EQ(parseRAPLZoneNumber("intel-rapl:0:1"), std::nullopt);
    EXPECT_EQ(parseRAPLZoneNumber("intel-rapl-mmio:0"), std::nullopt);
    EXPECT_EQ(parseRAPLZoneNumber("intel-rapl"), std::nullopt);
}

}  // namespace
}  // namespace corvane
