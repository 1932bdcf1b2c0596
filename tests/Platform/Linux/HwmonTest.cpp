#include "Platform/Linux/Hwmon.h"

#include <gtest/gtest.h>

#include <string>

#include "Platform/Linux/LinuxHardwareMonitor.h"

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

TEST(Hwmon, ParsesValuesAndDirectoryNames) {
    EXPECT_EQ(parseHwmonInteger("45500\n"), 45500);
    EXPECT_EQ(parseHwmonInteger("-12500\n"), -12500);
    EXPECT_EQ(parseHwmonInteger(""), std::nullopt);
    EXPECT_EQ(parseHwmonInteger("N/A\n"), std::nullopt);
    EXPECT_EQ(parseHwmonUnsigned("-1\n"), std::nullopt);
    EXPECT_EQ(parseHwmonUnsigned("262143328850\n"), 262143328850u);
    EXPECT_EQ(parseHwmonDirectoryNumber("hwmon12"), 12u);
    EXPECT_EQ(parseHwmonDirectoryNumber("hwmon"), std::nullopt);
    EXPECT_EQ(parseRAPLZoneNumber("intel-rapl:1"), 1u);
    EXPECT_EQ(parseRAPLZoneNumber("intel-rapl:0:1"), std::nullopt);
    EXPECT_EQ(parseRAPLZoneNumber("intel-rapl-mmio:0"), std::nullopt);
    EXPECT_EQ(parseRAPLZoneNumber("intel-rapl"), std::nullopt);
}

TEST(LinuxHardwareMonitor, FindsChipsAndZonesOnce) {
    LinuxHardwareMonitor laptop(CORVANE_FIXTURES "/intel-laptop-hybrid/sys");
    // Subzones and the MMIO copy of the package are left out.
    EXPECT_EQ(laptop.raplDomains(),
              (std::vector<RAPLDomain>{{"package-0", 262143328850}, {"psys", 262143328850}}));
    ASSERT_TRUE(laptop.energy(0));
    EXPECT_EQ(laptop.energy(0)->microjoules, 73481630112u);
    EXPECT_FALSE(laptop.energy(1));

    LinuxHardwareMonitor desktop(CORVANE_FIXTURES "/amd-desktop/sys");
    std::vector<std::string> names;
    for (const auto& chip : desktop.chips()) {
        names.push_back(chip.name + "@" + chip.device);
    }
    // hwmon7 has no name and is skipped; an NVMe controller names its PCI function.
    EXPECT_EQ(names, (std::vector<std::string>{"nvme@0000:02:00.0", "nvme@0000:05:00.0", "k10temp@",
                                               "amdgpu@", "nct6798@", "spd5118@1-0051",
                                               "spd5118@1-0053"}));
    EXPECT_EQ(desktop.chips()[3].powers, (std::vector<HwmonSensor>{{1, "PPT"}}));
    EXPECT_EQ(desktop.powerMicrowatts(3, 0), 23000000u);
    EXPECT_EQ(desktop.fanSpeeds(4, 0), (HwmonFanSpeeds{812, 200, std::nullopt}));
}

}  // namespace
}  // namespace corvane
