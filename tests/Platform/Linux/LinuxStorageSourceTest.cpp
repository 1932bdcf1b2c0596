#include "Platform/Linux/LinuxStorageSource.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string_view>

#include "Platform/Linux/Mountinfo.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

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
