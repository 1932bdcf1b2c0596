#include "Platform/Updates/ArchiveModule.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <variant>
#include <vector>

#include "Platform/Updates/ArchiveModuleInterface.h"
#include "tests/CorvaneShared/FileTestSupport.h"
#include "tests/Platform/Updates/ArchiveBuilder.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::buildArchive;
using testing::TemporaryDirectory;
using testing::TestKeys;

bool isMapped(const fs::path& file) {
    std::ifstream maps("/proc/self/maps");
    std::stringstream text;
    text << maps.rdbuf();
    return text.str().find(file.filename().string()) != std::string::npos;
}

TEST(ArchiveModule, VerifiesAndUnpacksInsideTheModuleAndUnloadsWithIt) {
    const TestKeys keys;
    const std::string archive =
        buildArchive({{.path = "Corvane.app/bin/agent", .content = "v2", .permissions = 0755}});
    std::string tampered = archive;
    tampered[tampered.size() / 2] ^= 0x01;
    const fs::path file = CORVANE_ARCHIVE_MODULE;
    // Twice: a module unloaded after one install loads again for the next.
    for (int round = 0; round < 2; ++round) {
        SCOPED_TRACE(round);
        ASSERT_FALSE(isMapped(file));
        auto loaded = ArchiveModule::load(file);
        ASSERT_TRUE(std::holds_alternative<ArchiveModule>(loaded))
            << std::get<UpdateFailure>(loaded).description;
        const ArchiveModule& module = std::get<ArchiveModule>(loaded);
        EXPECT_TRUE(isMapped(file));

        EXPECT_EQ(module.verify(archive, keys.sign(archive), keys.publicBase64()), std::nullopt);
        const auto refused = module.verify(tampered, keys.sign(archive), keys.publicBase64());
        ASSERT_TRUE(refused);
        EXPECT_EQ(refused->description,
                  "the update's signature does not match its archive and key");

        TemporaryDirectory folder;
        EXPECT_EQ(module.unpack(archive, folder.path()), std::nullopt);
        EXPECT_EQ(testing::readFile(folder / "Corvane.app/bin/agent"), "v2");
        fs::create_directory(folder / "second");
        const auto garbage = module.unpack("not an archive", folder / "second");
        ASSERT_TRUE(garbage);
        EXPECT_TRUE(garbage->description.starts_with("the update archive "))
            << garbage->description;

        loaded = UpdateFailure{"gone"};
        EXPECT_FALSE(isMapped(file));
    }
}

TEST(ArchiveModule, RefusesAModuleItCannotUseAndSaysWhy) {
    TemporaryDirectory folder;
    testing::writeFile(folder / "text.so", "not a shared object");
    struct Row {
        const char* name;
        fs::path file;
        std::string failure;
    };
    const std::string prefix = "the update cannot be installed: its archive module ";
    const std::vector<Row> rows = {
        {"no bundle", fs::path(),
         "the update cannot be installed: the agent does not run from a bundle that holds its "
         "archive module"},
        {"missing", folder / "missing.so",
         prefix + (folder / "missing.so").string() + " is missing (reinstall Corvane)"},
        {"a folder", folder.path(),
         prefix + folder.path().string() + " is missing (reinstall Corvane)"},
        {"not a shared object", folder / "text.so",
         prefix + (folder / "text.so").string() + " cannot be loaded: "},
        {"no entry point", CORVANE_ENTRYLESS_MODULE,
         prefix + CORVANE_ENTRYLESS_MODULE + " has no entry point corvane_archive_module"},
        {"another version", CORVANE_FOREIGN_MODULE,
         prefix + CORVANE_FOREIGN_MODULE + " is version " +
             std::to_string(CORVANE_ARCHIVE_MODULE_TEST_FOREIGN_VERSION) +
             ", where this Corvane needs version " +
             std::to_string(CORVANE_ARCHIVE_MODULE_VERSION) + " (reinstall Corvane)"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto loaded = ArchiveModule::load(row.file);
        ASSERT_TRUE(std::holds_alternative<UpdateFailure>(loaded));
        const std::string& description = std::get<UpdateFailure>(loaded).description;
        EXPECT_TRUE(description.starts_with(row.failure)) << description;
        // A module that was opened and refused is closed again.
        if (!row.file.empty()) {
            EXPECT_FALSE(isMapped(row.file));
        }
    }
}

TEST(ArchiveModule, LiesUnderTheBundlesLibraryFolder) {
    const fs::path file = ArchiveModule::pathIn("/opt/Corvane.app");
    EXPECT_EQ(file.filename(), "corvane-update-archive.so");
    EXPECT_EQ(file.parent_path().filename(), "corvane");
    // The build tree is a bundle too: the module built there is the one pathIn names.
    EXPECT_EQ(ArchiveModule::pathIn(CORVANE_BUILD_TREE), fs::path(CORVANE_ARCHIVE_MODULE));
}

}  // namespace
}  // namespace corvane
