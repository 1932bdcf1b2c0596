#include "Platform/Linux/Mountinfo.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

namespace corvane {
namespace {

TEST(Mountinfo, FindsTheTopmostRootMount) {
    struct Row {
        std::string_view name;
        std::string_view text;
        std::optional<RootMount> expected;
    };
    const Row rows[] = {
        {"empty", "", std::nullopt},
        {"optional fields before the separator",
         "22 27 0:21 / /proc rw - proc proc rw\n"
         "27 1 259:2 / / rw,relatime shared:1 master:4 - ext4 /dev/nvme0n1p2 rw\n",
         RootMount{{259, 2}, "/dev/nvme0n1p2"}},
        {"the last of several wins",
         "1 1 0:2 / / rw - rootfs rootfs rw\n27 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
         "30 27 8:3 / /home rw - ext4 /dev/sda3 rw",
         RootMount{{8, 2}, "/dev/sda2"}},
        {"octal escapes decoded",
         "27 1 8:17 / / rw - ext4 /dev/disk/by-id/usb\\040stick\\134a rw\n",
         RootMount{{8, 17}, "/dev/disk/by-id/usb stick\\a"}},
        {"escaped mount point is not root", "27 1 8:2 / /\\040 rw - ext4 /dev/sda2 rw\n",
         std::nullopt},
        {"malformed lines skipped",
         "27 1 8:2 / / rw - ext4 /dev/sda2 rw\n"
         "28 1 x:y / / rw - ext4 /dev/sdb1 rw\n"
         "29 1 8:33 / / rw shared:1 ext4 /dev/sdc1 rw\n"
         "30 1 8:49 / / rw -\n"
         "31 1 8:65\n",
         RootMount{{8, 2}, "/dev/sda2"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(parseRootMount(row.text), row.expected);
    }
}

}  // namespace
}  // namespace corvane
