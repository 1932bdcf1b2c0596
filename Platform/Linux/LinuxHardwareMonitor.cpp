#include "Platform/Linux/LinuxHardwareMonitor.h"

#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdint>
#include <string_view>
#include <utility>

#include "Foundation/DirectoryListing.h"
#include "Foundation/NumberParsing.h"
#include "Platform/Linux/Hwmon.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

using Kind = HwmonAttribute::Kind;

std::vector<std::string> listDirectory(const std::string& path) {
    std::vector<std::string> names;
    DirectoryListing listing(path.c_str());
    while (const auto name = listing.next()) {
        names.emplace_back(*name);
    }
    return names;
}

// The entries of `path` that `parseNumber` accepts, in ascending number order: readdir's order
// is the file system's, and hwmon10 must come after hwmon9.
template <typename Parse>
std::vector<std::pair<std::uint64_t, std::string>> listNumbered(const std::string& path,
                                                                Parse parseNumber) {
    std::vector<std::pair<std::uint64_t, std::string>> entries;
    for (auto& name : listDirectory(path)) {
        if (const auto number = parseNumber(name)) {
            entries.emplace_back(*number, std::move(name));
        }
    }
    std::sort(entries.begin(), entries.end());
    return entries;
}

std::string lastComponent(std::string_view target) {
    return std::string(target.substr(target.rfind('/') + 1));
}

std::optional<std::string> linkTarget(const std::string& path) {
    char target[PATH_MAX];
    const auto length = ::readlink(path.c_str(), target, sizeof(target));
    if (length <= 0) {
        return std::nullopt;
    }
    return std::string(target, static_cast<std::size_t>(length));
}

// The name of the device the chip hangs off. A class device ("nvme0", "hidraw2") is numbered in
// probe order, which can change from boot to boot, and links on to the hardware it drives; that
// hardware's bus address ("0000:01:00.0") stays put, so it is preferred. A PCI device's own
// "device" is a plain file (its device ID), which readlink refuses.
std::string deviceName(const std::string& hwmonDirectory) {
    const auto device = hwmonDirectory + "/device";
    const auto target = linkTarget(device);
    if (!target) {
        return {};
    }
    if (const auto hardware = linkTarget(device + "/device")) {
        return lastComponent(*hardware);
    }
    return lastComponent(*target);
}

bool exists(const std::string& path) {
    return ::access(path.c_str(), F_OK) == 0;
}

std::string sensorFile(const std::string& directory, std::string_view type, int number,
                       std::string_view item) {
    return directory + "/" + std::string(type) + std::to_string(number) + "_" + std::string(item);
}

// The element at `index`, or null past the end: reads run on the sensor pass's thread, where a
// throw would end the program.
template <typename T>
const T* elementAt(const std::vector<T>& elements, std::size_t index) {
    return index < elements.size() ? &elements[index] : nullptr;
}

void insertSorted(std::vector<int>& numbers, int number) {
    const auto place = std::lower_bound(numbers.begin(), numbers.end(), number);
    if (place == numbers.end() || *place != number) {
        numbers.insert(place, number);
    }
}

}  // namespace

LinuxHardwareMonitor::LinuxHardwareMonitor(const std::filesystem::path& sysRoot) {
    const auto hwmon = (sysRoot / "class/hwmon").string();
    for (const auto& [number, name] : listNumbered(hwmon, parseHwmonDirectoryNumber)) {
        discoverChip(hwmon + "/" + name);
    }
    discoverRAPLDomains((sysRoot / "class/powercap").string());
}

void LinuxHardwareMonitor::discoverChip(const std::string& hwmonDirectory) {
    // Drivers still on the old registration call (applesmc among them) keep the chip's name and
    // sensor files in the device's directory; the hwmon directory then holds only the link.
    auto directory = hwmonDirectory;
    auto name = readTrimmed(directory + "/name");
    if (name.empty()) {
        directory = hwmonDirectory + "/device";
        name = readTrimmed(directory + "/name");
    }
    if (name.empty()) {
        return;
    }
    std::vector<int> temperatures;
    std::vector<int> fans;
    std::vector<int> powers;
    for (const auto& fileName : listDirectory(directory)) {
        const auto attribute = parseHwmonAttribute(fileName);
        if (!attribute) {
            continue;
        }
        const bool isInput = attribute->item == "input";
        if (attribute->kind == Kind::temperature && isInput) {
            insertSorted(temperatures, attribute->number);
        } else if (attribute->kind == Kind::fan && isInput) {
            insertSorted(fans, attribute->number);
        } else if (attribute->kind == Kind::power && (isInput || attribute->item == "average")) {
            insertSorted(powers, attribute->number);
        }
    }

    HwmonChip chip{.name = std::move(name), .device = deviceName(hwmonDirectory)};
    ChipFiles files;
    for (const int number : temperatures) {
        chip.temperatures.push_back(
            {number, readTrimmed(sensorFile(directory, "temp", number, "label"))});
        files.temperatures.push_back(sensorFile(directory, "temp", number, "input"));
    }
    for (const int number : fans) {
        chip.fans.push_back({number, readTrimmed(sensorFile(directory, "fan", number, "label"))});
        auto minimum = sensorFile(directory, "fan", number, "min");
        auto maximum = sensorFile(directory, "fan", number, "max");
        files.fans.push_back({sensorFile(directory, "fan", number, "input"),
                              exists(minimum) ? std::move(minimum) : std::string(),
                              exists(maximum) ? std::move(maximum) : std::string()});
    }
    for (const int number : powers) {
        chip.powers.push_back(
            {number, readTrimmed(sensorFile(directory, "power", number, "label"))});
        // amdgpu writes the average over the firmware's window on most cards and only the
        // momentary figure on recent ones; the steadier average is preferred where both exist.
        auto average = sensorFile(directory, "power", number, "average");
        files.powers.push_back(exists(average) ? std::move(average)
                                               : sensorFile(directory, "power", number, "input"));
    }
    chipList.push_back(std::move(chip));
    chipFiles.push_back(std::move(files));
}

void LinuxHardwareMonitor::discoverRAPLDomains(const std::string& powercapDirectory) {
    for (const auto& [number, zone] : listNumbered(powercapDirectory, parseRAPLZoneNumber)) {
        const auto directory = powercapDirectory + "/" + zone;
        auto name = readTrimmed(directory + "/name");
        if (name.empty()) {
            continue;
        }
        domains.push_back({std::move(name), readUnsigned(directory + "/max_energy_range_uj")});
        energyFiles.push_back(directory + "/energy_uj");
    }
}

std::string LinuxHardwareMonitor::readTrimmed(const std::string& path) {
    const auto text = reader.read(path.c_str());
    return text ? std::string(text::trim(*text)) : std::string();
}

std::optional<std::uint64_t> LinuxHardwareMonitor::readUnsigned(const std::string& path) {
    if (path.empty()) {
        return std::nullopt;
    }
    return reader.readNumber<std::uint64_t>(path.c_str());
}

std::optional<std::int64_t> LinuxHardwareMonitor::temperatureMillidegrees(std::size_t chip,
                                                                          std::size_t sensor) {
    const auto* path =
        chip < chipFiles.size() ? elementAt(chipFiles[chip].temperatures, sensor) : nullptr;
    if (!path) {
        return std::nullopt;
    }
    // Drivers answer EIO or ENODATA for a sensor that is absent or not ready (an NVMe drive's
    // second sensor, a disk spun down under drivetemp); the reader turns both into nothing.
    return reader.readNumber<std::int64_t>(path->c_str());
}

HwmonFanSpeeds LinuxHardwareMonitor::fanSpeeds(std::size_t chip, std::size_t sensor) {
    const auto* files = chip < chipFiles.size() ? elementAt(chipFiles[chip].fans, sensor) : nullptr;
    if (!files) {
        return {};
    }
    return {readUnsigned(files->input), readUnsigned(files->minimum), readUnsigned(files->maximum)};
}

std::optional<std::uint64_t> LinuxHardwareMonitor::powerMicrowatts(std::size_t chip,
                                                                   std::size_t sensor) {
    const auto* path =
        chip < chipFiles.size() ? elementAt(chipFiles[chip].powers, sensor) : nullptr;
    return path ? readUnsigned(*path) : std::nullopt;
}

std::optional<EnergySample> LinuxHardwareMonitor::energy(std::size_t domain) {
    const auto* path = elementAt(energyFiles, domain);
    const auto microjoules = path ? readUnsigned(*path) : std::nullopt;
    if (!microjoules) {
        return std::nullopt;
    }
    // Taken right after the read, so the time between two samples is the time between reads.
    return EnergySample{*microjoules, std::chrono::steady_clock::now()};
}

}  // namespace corvane
