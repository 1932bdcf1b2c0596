#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "Platform/Linux/BlockDevice.h"
#include "Platform/Linux/KernelFileReader.h"
#include "Platform/StorageSource.h"

namespace corvane {

/// The capacity and name of the root file system, read under the given roots (the real ones,
/// or a fixture tree). Needs no privileges. One call at a time, from any one thread.
class LinuxStorageSource final : public StorageSource {
public:
    /// `measuredPath`: the path whose file system's capacity is measured ("/" in use; a test
    /// measures a directory of its own, since a fixture tree cannot hold a file system).
    explicit LinuxStorageSource(const std::filesystem::path& procRoot = "/proc",
                                const std::filesystem::path& sysRoot = "/sys",
                                const std::filesystem::path& devRoot = "/dev",
                                const std::filesystem::path& measuredPath = "/");

    /// Capacity from statvfs of the measured path, in bytes: total = f_blocks × f_frsize,
    /// available = f_bavail × f_frsize (what an unprivileged user can still write, without the
    /// blocks reserved for root). Absent when statvfs fails.
    std::optional<StorageReading> readStorage() override;

    /// The root file system's label, else its disk's model, else empty.
    std::string readVolumeName();

private:
    /// The root file system's block device: its number and kernel name ("nvme0n1p2"; empty
    /// when sysfs does not say). Absent when "/" is not on a block device.
    struct BlockDeviceIdentity {
        DeviceNumber number;
        std::string kernelName;
    };

    std::optional<BlockDeviceIdentity> findRootDevice();
    std::optional<BlockDeviceIdentity> blockDeviceAt(const std::string& mountSource);
    std::optional<std::string> readLabel(const BlockDeviceIdentity& device) const;
    std::optional<std::string> readDiskModel(DeviceNumber device);
    std::optional<std::string> readModelFile(const std::filesystem::path& path);

    KernelFileReader reader;
    std::filesystem::path sysRoot;
    std::filesystem::path devRoot;
    std::string mountinfoPath;
    std::string measuredPath;
};

}  // namespace corvane
