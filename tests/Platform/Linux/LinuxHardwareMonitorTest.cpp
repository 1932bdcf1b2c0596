#include "Platform/Linux/LinuxHardwareMonitor.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

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

    // Numbers past the chips and sensors found read as nothing, not as a throw on the sensor
    // pass's thread.
    EXPECT_EQ(desktop.temperatureMillidegrees(0, 3), std::nullopt);
    EXPECT_EQ(desktop.temperatureMillidegrees(7, 0), std::nullopt);
    EXPECT_EQ(desktop.fanSpeeds(4, 5), HwmonFanSpeeds{});
    EXPECT_EQ(desktop.powerMicrowatts(0, 0), std::nullopt);
    EXPECT_EQ(laptop.energy(2), std::nullopt);
}

}  // namespace
}  // namespace corvane
