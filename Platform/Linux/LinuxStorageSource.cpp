#include "Platform/Linux/LinuxStorageSource.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>

#include <cstdint>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

#include "Foundation/DirectoryListing.h"
#include "Platform/Linux/Mountinfo.h"

namespace corvane {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view devPrefix = "/dev/";

// count × unit as the signed 64-bit byte figure the monitor keeps, held at its largest value
// rather than wrapping to a negative size.
std::int64_t bytesFrom(std::uint64_t count, std::uint64_t unit) {
    constexpr auto limit = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    if (unit != 0 && count > limit / unit) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return static_cast<std::int64_t>(count * unit);
}

std::string deviceNumberText(DeviceNumber device) {
    return std::to_string(device.major) + ':' + std::to_string(device.minor);
}

bool isLinkToDevice(const fs::path& link, DeviceNumber number, const std::string& kernelName) {
    struct stat node {};
    if (::stat(link.c_str(), &node) == 0 && S_ISBLK(node.st_mode)) {
        return node.st_rdev == makedev(number.major, number.minor);
    }
    // Without a device node to ask (a fixture tree, a /dev that udev does not manage), the
    // link still names the device: udev points it at "../../<kernel name>".
    std::error_code error;
    const auto target = fs::read_symlink(link, error);
    return !error && !kernelName.empty() && target.filename() == kernelName;
}

}  // namespace

LinuxStorageSource::LinuxStorageSource(const fs::path& procRoot, const fs::path& sysRoot,
                                       const fs::path& devRoot, const fs::path& measuredPath)
    : sysRoot(sysRoot),
      devRoot(devRoot),
      mountinfoPath((procRoot / "self/mountinfo").string()),
      measuredPath(measuredPath.string()) {}

std::optional<StorageReading> LinuxStorageSource::readStorage() {
    struct statvfs volume {};
    if (::statvfs(measuredPath.c_str(), &volume) != 0) {
        return std::nullopt;
    }
    StorageReading reading;
    reading.total = bytesFrom(volume.f_blocks, volume.f_frsize);
    reading.available = bytesFrom(volume.f_bavail, volume.f_frsize);
    reading.name = readVolumeName();
    return reading;
}

std::string LinuxStorageSource::readVolumeName() {
    const auto device = findRootDevice();
    if (!device) {
        return {};
    }
    if (auto label = readLabel(*device)) {
        return std::move(*label);
    }
    if (auto model = readDiskModel(device->number)) {
        return std::move(*model);
    }
    return {};
}

std::optional<LinuxStorageSource::BlockDeviceIdentity> LinuxStorageSource::findRootDevice() {
    const auto text = reader.read(mountinfoPath.c_str());
    if (!text) {
        return std::nullopt;
    }
    const auto mount = parseRootMount(*text);
    if (!mount) {
        return std::nullopt;
    }
    if (mount->device.major == 0) {
        // btrfs, overlay, zfs and tmpfs give "/" an anonymous device number; the mount source
        // may still name the block device underneath.
        return blockDeviceAt(mount->source);
    }
    // <sysfs>/dev/block/8:2 links to the device's own directory, which bears its kernel name
    // ("../../devices/pci0000:00/.../block/sda/sda2").
    std::error_code error;
    const auto target =
        fs::read_symlink(sysRoot / "dev/block" / deviceNumberText(mount->device), error);
    return BlockDeviceIdentity{mount->device, error ? std::string() : target.filename().string()};
}

std::optional<LinuxStorageSource::BlockDeviceIdentity> LinuxStorageSource::blockDeviceAt(
    const std::string& mountSource) {
    if (!mountSource.starts_with(devPrefix)) {
        return std::nullopt;
    }
    // "/dev/mapper/root" links to "../dm-0": sysfs knows the device by the link's target.
    std::error_code error;
    const auto node = fs::canonical(devRoot / mountSource.substr(devPrefix.size()), error);
    if (error) {
        return std::nullopt;
    }
    auto kernelName = node.filename().string();
    const auto text = reader.read((sysRoot / "class/block" / kernelName / "dev").c_str());
    const auto number = text ? parseDeviceNumber(*text) : std::nullopt;
    if (!number) {
        // Not a block device the kernel knows.
        return std::nullopt;
    }
    return BlockDeviceIdentity{*number, std::move(kernelName)};
}

std::optional<std::string> LinuxStorageSource::readLabel(const BlockDeviceIdentity& device) const {
    const fs::path labels = devRoot / "disk/by-label";
    DirectoryListing listing(labels.c_str());
    while (const auto name = listing.next()) {
        if (isLinkToDevice(labels / *name, device.number, device.kernelName)) {
            return decodeUdevLabel(*name);
        }
    }
    return std::nullopt;
}

std::optional<std::string> LinuxStorageSource::readDiskModel(DeviceNumber device) {
    const auto deviceDirectory = sysRoot / "dev/block" / deviceNumberText(device);
    if (auto model = readModelFile(deviceDirectory / "device/model")) {
        return model;
    }
    // A partition has no device of its own. The kernel resolves ".." from the partition's real
    // directory, which sits inside its disk's.
    std::error_code error;
    if (!fs::exists(deviceDirectory / "partition", error)) {
        return std::nullopt;
    }
    return readModelFile(deviceDirectory / ".." / "device/model");
}

std::optional<std::string> LinuxStorageSource::readModelFile(const fs::path& path) {
    const auto text = reader.read(path.c_str());
    const auto model = text ? parseDiskModel(*text) : std::nullopt;
    if (!model) {
        return std::nullopt;
    }
    return std::string(*model);
}

}  // namespace corvane
