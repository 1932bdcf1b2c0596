#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace corvane {

/// A device number as the kernel prints it, "major:minor".
struct DeviceNumber {
    unsigned major = 0;
    unsigned minor = 0;

    bool operator==(const DeviceNumber&) const = default;
};

/// Parses "8:2" (a mountinfo field, or the text of a sysfs `dev` file with its newline). Absent
/// unless both halves are unsigned decimal numbers.
[[nodiscard]] std::optional<DeviceNumber> parseDeviceNumber(std::string_view text);

/// The text of a disk's sysfs `device/model` file without the blanks that pad it to a fixed
/// width (SCSI and ATA pad to 16 characters, NVMe to 40). Absent when nothing else is left.
[[nodiscard]] std::optional<std::string_view> parseDiskModel(std::string_view text);

/// A file system label from the name of its /dev/disk/by-label link: udev writes every byte
/// that is unsafe in a file name (a space, a '/', a '\') as "\xHH".
[[nodiscard]] std::string decodeUdevLabel(std::string_view linkName);

}  // namespace corvane
