#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Platform/Linux/BlockDevice.h"

namespace corvane {

/// The file system mounted on "/", as /proc/self/mountinfo describes it.
struct RootMount {
    /// The st_dev of files on it: a block device's number, or major 0 for file systems that have
    /// no single device of their own (btrfs, overlay, zfs, tmpfs, NFS).
    DeviceNumber device;
    /// What was mounted, with the kernel's octal escapes decoded: "/dev/nvme0n1p2", "overlay".
    std::string source;

    bool operator==(const RootMount&) const = default;
};

/// Parses the text of /proc/self/mountinfo (Documentation/filesystems/proc.rst, "mountinfo"):
/// the last line whose mount point is "/", because a later mount on "/" hides the earlier ones
/// (the initramfs's rootfs under the real root). Malformed lines are skipped; absent when no
/// well-formed line mounts "/".
[[nodiscard]] std::optional<RootMount> parseRootMount(std::string_view text);

/// Undoes the kernel's escaping of mountinfo fields: a space, tab, newline or backslash in a
/// path is written as three octal digits ("\040"). Anything else is kept as it stands.
[[nodiscard]] std::string decodeMountinfoEscapes(std::string_view field);

}  // namespace corvane
