#include "CorvaneShared/AppLinks.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "CorvaneShared/BundleDirectory.h"
#include "tests/CorvaneShared/BundleTestSupport.h"
#include "tests/CorvaneShared/FakeEnvironment.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;
using testing::writeBundleInfo;
using testing::writeFile;

constexpr const char* appIdentifier = "io.test.App";

/// An agent whose environment, launches and posted signals are recorded.
class AppLinksTest : public ::testing::Test {
protected:
    AppLinks links(std::optional<fs::path> agentBundle = std::nullopt) {
        return AppLinks({
            .environment = environment.lookup(),
            .agentBundle = std::move(agentBundle),
            .appBundleIdentifier = appIdentifier,
            .post = [this](SharedSettings::Signal) { events.emplace_back("openSettings"); },
            .launch =
                [this](const DetachedLaunch& launch) {
                    events.emplace_back("launch");
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
        writeBundleInfo(root / row.appFolder, row.appInfo);
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

    writeBundleInfo(app, R"({"identifier": "io.test.App", "executable": "bin/corvane"})");
    links(agent).openSettingsApp();
    ASSERT_EQ(launches.size(), 1u);
    EXPECT_EQ(launches[0].program, (app / "bin/corvane").string());
}

TEST_F(AppLinksTest, WithoutBundleOrEntryStartsTheCompanionBuiltOrInstalledWithTheAgent) {
    for (const char* place : {"corvane-settings", "bin/corvane-settings"}) {
        SCOPED_TRACE(place);
        fs::remove_all(root.path());
        const fs::path agentBundle = root / "build";
        writeBundleInfo(agentBundle, R"({"identifier": "io.test.Agent"})");
        links(agentBundle).openSettingsApp();
        EXPECT_TRUE(launches.empty());

        fs::create_directories((agentBundle / place).parent_path());
        writeFile(agentBundle / place, "#!/bin/sh\n");
        links(agentBundle).openSettingsApp();
        ASSERT_EQ(launches.size(), 1u);
        EXPECT_EQ(launches[0].program, (agentBundle / place).string());
        // An installed desktop entry still comes first.
        writeDesktopEntry(root / "system", "[Desktop Entry]\nExec=installed\n");
        EXPECT_EQ(links(agentBundle).containingAppURL(),
                  root / "system/applications/io.test.App.desktop");
        launches.clear();
    }
}

TEST_F(AppLinksTest, UnitTestHostIsMarkedByTheVariableEvenWhenEmpty) {
    EXPECT_FALSE(links().isUnitTestHost());
    environment.variables["XCTestConfigurationFilePath"] = "";
    EXPECT_TRUE(links().isUnitTestHost());
}

}  // namespace
}  // namespace corvane
