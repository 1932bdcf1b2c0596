#include "CorvaneShared/BundleDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tests/CorvaneShared/BundleTestSupport.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;
using testing::writeBundleInfo;
using testing::writeFile;

TEST(BundleDirectory, InfoOpensOnlyWithAnIdentifier) {
    struct Row {
        const char* name;
        std::optional<std::string> file;
        std::optional<std::string> identifier;
    };
    const std::vector<Row> rows = {
        {"complete", R"({"identifier": "a.b", "executable": "bin/a"})", "a.b"},
        {"no info file", std::nullopt, std::nullopt},
        {"not JSON", "identifier=a.b", std::nullopt},
        {"identifier not a string", R"({"identifier": 7})", std::nullopt},
        {"empty identifier", R"({"identifier": ""})", std::nullopt},
        {"larger than any bundle info",
         R"({"identifier": "a.b", "padding": ")" + std::string(2 * 1024 * 1024, ' ') + "\"}",
         std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TemporaryDirectory bundle;
        if (row.file) {
            writeBundleInfo(bundle.path(), *row.file);
        }
        const std::optional<BundleInfo> info = BundleDirectory::readInfo(bundle.path());
        EXPECT_EQ(info ? std::optional(info->identifier) : std::nullopt, row.identifier);
    }
}

TEST(BundleDirectory, LocalizationsAreTheTranslationFilesAndTheExecutableFindsItsBundle) {
    TemporaryDirectory prefix;
    writeBundleInfo(prefix.path(), R"({"identifier": "a.b"})");
    const fs::path translations =
        BundleDirectory::resourceDirectory(prefix.path()) / "translations";
    fs::create_directories(translations);
    for (const char* name : {"corvane_ja.qm", "corvane_pt_BR.qm", "corvane_de.qm", "corvane_.qm",
                             "corvane_fr.ts", "other_es.qm"}) {
        writeFile(translations / name, "");
    }
    EXPECT_EQ(BundleDirectory::localizations(prefix.path()),
              (std::vector<std::string>{"de", "ja", "pt-BR"}));
    EXPECT_EQ(BundleDirectory::translationFile(prefix.path(), "pt-BR"),
              translations / "corvane_pt_BR.qm");

    EXPECT_EQ(BundleDirectory::bundleOfExecutable(prefix / "bin/corvane-agent"), prefix.path());
    EXPECT_EQ(BundleDirectory::bundleOfExecutable(prefix / "corvane-agent"), prefix.path());
    EXPECT_EQ(BundleDirectory::bundleOfExecutable(prefix / "share/bin/corvane-agent"),
              std::nullopt);
}

}  // namespace
}  // namespace corvane
