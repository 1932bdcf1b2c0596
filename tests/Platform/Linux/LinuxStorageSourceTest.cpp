#include "Platform/Linux/LinuxStorageSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "Platform/Linux/Mountinfo.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

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

fs::path fixtureTree(std::string_view name) {
    return fs::path(CORVANE_FIXTURES) / name;
}

LinuxStorageSource storageOf(const fs::path& tree, const fs::path& measuredPath) {
    return LinuxStorageSource(tree / "proc", tree / "sys", tree / "dev", measuredPath);
}

TEST(LinuxStorageSource, NamesTheRootFileSystem) {
    struct Row {
        std::string_view tree;
        std::string_view name;
    };
    const Row rows[] = {
        {"storage-labelled-nvme", "Corvane Root"},
        // Another disk's label must not be taken for the root's.
        {"storage-model-sata", "CT1000MX500SSD1"},
        {"storage-virtio-unnamed", ""},
        {"storage-btrfs-luks", "fedora_localhost-live"},
        {"storage-container-overlay", ""},
        {"no-such-tree", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.tree);
        const auto tree = fixtureTree(row.tree);
        EXPECT_EQ(storageOf(tree, tree).readVolumeName(), row.name);
    }
}

TEST(LinuxStorageSource, MeasuresWhatAnUnprivilegedUserCanWrite) {
    const auto tree = fixtureTree("storage-labelled-nvme");
    const auto reading = storageOf(tree, tree).readStorage();
    ASSERT_TRUE(reading);
    // std::filesystem::space is an independent statvfs reader; "available" means the same
    // f_bavail there. Other programs write meanwhile, so the free figure may move a little.
    const auto space = fs::space(tree);
    EXPECT_EQ(reading->total, static_cast<std::int64_t>(space.capacity));
    EXPECT_NEAR(static_cast<double>(reading->available), static_cast<double>(space.available),
                static_cast<double>(space.capacity) / 100);
    EXPECT_EQ(reading->name, "Corvane Root");

    EXPECT_FALSE(storageOf(tree, tree / "missing").readStorage());
}

}  // namespace
}  // namespace corvane
