#include "CorvaneShared/AppLinks.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "CorvaneShared/BundleDirectory.h"
#include "CorvaneShared/DesktopEntry.h"
#include "tests/CorvaneShared/FakeEnvironment.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;
using testing::writeFile;

constexpr const char* appIdentifier = "io.test.App";

void writeBundle(const fs::path& bundle, const std::string& info) {
    fs::create_directories(BundleDirectory::resourceDirectory(bundle));
    writeFile(BundleDirectory::resourceDirectory(bundle) / "bundle.json", info);
}

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
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TemporaryDirectory bundle;
        if (row.file) {
            writeBundle(bundle.path(), *row.file);
        }
        const std::optional<BundleInfo> info = BundleDirectory::readInfo(bundle.path());
        EXPECT_EQ(info ? std::optional(info->identifier) : std::nullopt, row.identifier);
    }
}

TEST(BundleDirectory, LocalizationsAreTheTranslationFilesAndTheExecutableFindsItsBundle) {
    TemporaryDirectory prefix;
    writeBundle(prefix.path(), R"({"identifier": "a.b"})");
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

TEST(DesktopEntries, ExecSplitsByQuotingAndExpandsFieldCodesForNoFiles) {
    struct Row {
        const char* exec;
        const char* icon;
        std::vector<std::string> arguments;
    };
    const std::vector<Row> rows = {
        {"corvane", "", {"corvane"}},
        {R"("/opt/My App/corvane"  --settings %U)", "", {"/opt/My App/corvane", "--settings"}},
        {R"(sh -c "echo \"a %f\" \$HOME \\" "")", "", {"sh", "-c", R"(echo "a %f" $HOME \)", ""}},
        {"corvane %i %c %k --file=%f 100%%",
         "corvane-icon",
         {"corvane", "--icon", "corvane-icon", "Corvane", "/x/app.desktop", "--file=", "100%"}},
        {"corvane %i %F %d", "", {"corvane"}},
        {R"(corvane "unterminated)", "", {}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.exec);
        const DesktopEntry entry{
            .file = "/x/app.desktop", .exec = row.exec, .name = "Corvane", .icon = row.icon};
        EXPECT_EQ(DesktopEntries::commandLine(entry), row.arguments);
    }
}

/// An agent whose environment, launches and posted signals are recorded.
class AppLinksTest : public ::testing::Test {
protected:
    AppLinks links(std::optional<fs::path> agentBundle = std::nullopt) {
        return AppLinks({
            .environment = environment.lookup(),
            .agentBundle = std::move(agentBundle),
            .appBundleIdentifier = appIdentifier,
            .post = [this](SharedSettings::Signal) { events.push_back("openSettings"); },
            .launch =
                [this](const DetachedLaunch& launch) {
                    events.push_back("launch");
                    launches.push_back(launch);
                    return true;
                },
        });
    }
    void writeDesktopEntry(const fs::path& dataDirectory, const std::string& content) {
        fs::create_directories(dataDirectory / "applications");
        writeFile(dataDirectory / "applications" / (std::string(appIdentifier) + ".desktop"),
                  content);
    }

    TemporaryDirectory root;
    testing::FakeEnvironment environment{{{"XDG_DATA_HOME", (root / "home").string()},
                                          {"XDG_DATA_DIRS", (root / "system").string()}}};
    std::vector<std::string> events;
    std::vector<DetachedLaunch> launches;
};

TEST_F(AppLinksTest, OpensTheDesktopEntryAfterPostingWithTheTestEnvironment) {
    environment.variables["CORVANE_SETTINGS_SUITE"] = "test.suite";
    environment.variables["CORVANE_LANGUAGE"] = "";
    writeDesktopEntry(root / "system",
                      "[Desktop Entry]\n"
                      "Name=Corvane\n"
                      "Name[de]=Korvane\n"
                      "Exec = corvane\\s--settings %c %u\n"
                      "Path=/srv/corvane\n"
                      "[Desktop Action quit]\n"
                      "Exec=corvane --quit\n");
    links().openSettingsApp();

    EXPECT_EQ(events, (std::vector<std::string>{"openSettings", "launch"}));
    ASSERT_EQ(launches.size(), 1u);
    EXPECT_EQ(
        launches[0],
        (DetachedLaunch{
            .program = "corvane",
            .arguments = {"--settings", "Corvane"},
            .workingDirectory = "/srv/corvane",
            .environment = {{"CORVANE_LANGUAGE", ""}, {"CORVANE_SETTINGS_SUITE", "test.suite"}},
        }));
}

TEST_F(AppLinksTest, ContainingAppIsTheEmbeddingBundleElseTheFirstVisibleDesktopEntry) {
    const fs::path agentPath = "Contents/Library/LoginItems/CorvaneAgent.app";
    struct Row {
        const char* name;
        const char* appFolder;
        const char* appInfo;
        const char* userEntry;
        const char* systemEntry;
        std::optional<std::string> expected;
    };
    const std::vector<Row> rows = {
        {"embedded", "Corvane.app", R"({"identifier": "io.test.App"})", nullptr,
         "[Desktop Entry]\nExec=c\n", "Corvane.app"},
        {"embedded in another app", "Other.app", R"({"identifier": "io.test.Other"})", nullptr,
         "[Desktop Entry]\nExec=c\n", "system/applications/io.test.App.desktop"},
        {"not in an app folder", "build", R"({"identifier": "io.test.App"})",
         "[Desktop Entry]\nExec=c\n", "[Desktop Entry]\nExec=c\n",
         "home/applications/io.test.App.desktop"},
        {"user's hidden entry deletes the system's", "build", "", "[Desktop Entry]\nHidden=true\n",
         "[Desktop Entry]\nExec=c\n", std::nullopt},
        {"nowhere", "build", "", nullptr, nullptr, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        fs::remove_all(root.path());
        writeBundle(root / row.appFolder, row.appInfo);
        for (auto [folder, entry] :
             {std::pair{"home", row.userEntry}, std::pair{"system", row.systemEntry}}) {
            if (entry != nullptr) {
                writeDesktopEntry(root / folder, entry);
            }
        }
        const std::optional<fs::path> app =
            links(root / row.appFolder / agentPath / "").containingAppURL();
        EXPECT_EQ(app, row.expected ? std::optional(root / *row.expected) : std::nullopt);
    }
}

TEST_F(AppLinksTest, StartsTheEmbeddingBundlesExecutableOrOnlyPostsWhenThereIsNone) {
    const fs::path app = root / "Corvane.app";
    const fs::path agent = app / "Contents/Library/LoginItems/CorvaneAgent.app";
    links(agent).openSettingsApp();
    EXPECT_EQ(events, (std::vector<std::string>{"openSettings"}));

    writeBundle(app, R"({"identifier": "io.test.App", "executable": "bin/corvane"})");
    links(agent).openSettingsApp();
    ASSERT_EQ(launches.size(), 1u);
    EXPECT_EQ(launches[0].program, (app / "bin/corvane").string());
}

TEST_F(AppLinksTest, UnitTestHostIsMarkedByTheVariableEvenWhenEmpty) {
    EXPECT_FALSE(links().isUnitTestHost());
    environment.variables["XCTestConfigurationFilePath"] = "";
    EXPECT_TRUE(links().isUnitTestHost());
}

}  // namespace
}  // namespace corvane
