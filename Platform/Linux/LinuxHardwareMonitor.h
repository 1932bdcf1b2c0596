#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Platform/HardwareMonitor.h"
#include "Platform/Linux/KernelFileReader.h"

namespace corvane {

/// The hwmon chips under <sysfs>/class/hwmon and the top-level RAPL zones under
/// <sysfs>/class/powercap. Both folders are listed, and every label and name read, once, in the
/// constructor; a chip whose driver loads later (a module loaded by hand, a GPU bound after
/// start) is not seen until the monitor is created again, and a chip that goes away simply
/// reads as absent. One sensor pass at a time.
class LinuxHardwareMonitor final : public HardwareMonitor {
public:
    explicit LinuxHardwareMonitor(const std::filesystem::path& sysRoot = "/sys");

    const std::vector<HwmonChip>& chips() const override { return chipList; }
    const std::vector<RAPLDomain>& raplDomains() const override { return domains; }
    std::optional<std::int64_t> temperatureMillidegrees(std::size_t chip,
                                                        std::size_t sensor) override;
    HwmonFanSpeeds fanSpeeds(std::size_t chip, std::size_t sensor) override;
    std::optional<std::uint64_t> powerMicrowatts(std::size_t chip, std::size_t sensor) override;
    std::optional<EnergySample> energy(std::size_t domain) override;

private:
    /// A fan's files; a limit's path is empty when the chip has no such file.
    struct FanFiles {
        std::string input;
        std::string minimum;
        std::string maximum;
    };
    struct ChipFiles {
        std::vector<std::string> temperatures;
        std::vector<FanFiles> fans;
        std::vector<std::string> powers;
    };

    void discoverChip(const std::string& hwmonDirectory);
    void discoverRAPLDomains(const std::string& powercapDirectory);
    /// The file's text without surrounding blanks, newlines and NULs; empty when unreadable.
    std::string readTrimmed(const std::string& path);
    std::optional<std::uint64_t> readUnsigned(const std::string& path);

    KernelFileReader reader;
    std::vector<HwmonChip> chipList;
    std::vector<ChipFiles> chipFiles;
    std::vector<RAPLDomain> domains;
    std::vector<std::string> energyFiles;
};

}  // namespace corvane
