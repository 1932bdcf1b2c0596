#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "tests/CorvaneShared/FileTestSupport.h"
#include "tests/support/LoopbackHttpServer.h"
#include "tests/support/ProgramRun.h"

namespace {

namespace fs = std::filesystem;
using corvane::testing::LoopbackHttpServer;
using corvane::testing::ProgramRun;
using corvane::testing::readAll;
using corvane::testing::runCommand;
using corvane::testing::TemporaryDirectory;
using nlohmann::json;

const fs::path agentInBundle = "Contents/Library/LoginItems/CorvaneAgent.app/bin/corvane-agent";

std::string quoted(const std::string& text) {
    return "'" + text + "'";
}

ProgramRun runOrFail(const std::string& command, const fs::path& errors) {
    ProgramRun run = runCommand(command, errors);
    EXPECT_EQ(run.status, 0) << command << "\n" << run.errors;
    return run;
}

/// Lays out Corvane.app at `folder` with the release scripts of the build (make bundle's).
void assembleBundle(const fs::path& folder, const std::string& version, const std::string& build,
                    const std::string& feedURL, const std::string& publicKey, bool pack) {
    std::string command =
        std::string(CORVANE_CMAKE) + " -D OUTPUT_DIR=" + quoted(folder) +
        " -D AGENT_PROGRAM=" CORVANE_AGENT_PROGRAM " -D ARCHIVE_MODULE=" CORVANE_ARCHIVE_MODULE
        " -D MODULE_DIR=" CORVANE_MODULE_DIR " -D CTL_PROGRAM=" CORVANE_CTL_PROGRAM
        " -D TRANSLATIONS_DIR=" CORVANE_TRANSLATIONS
        " -D APP_ID=io.corvane.Corvane -D AGENT_ID=io.corvane.Corvane.Agent"
        " -D VERSION=" +
        version + " -D BUILD=" + build + " -D FEED_URL=" + quoted(feedURL) +
        " -D PUBLIC_KEY=" + quoted(publicKey) + " -D PACK=" + (pack ? "ON" : "OFF") +
        " -P " CORVANE_ASSEMBLE_SCRIPT " >/dev/null";
    runOrFail(command, folder.parent_path() / "assemble.err");
}

/// Every test shares one feed server and one offered release, 2.1 (57), with its archive and
/// its signing key; each test gets an installed 2.0 (50) of its own.
class UpdateEndToEndTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        shared = new Shared;
        const fs::path root = shared->folder.path();
        shared->publicKey = release("keys " + quoted(root / "release.key"));
        release("keys " + quoted(root / "other.key"));  // for an archive signed by another
        fs::create_directories(root / "offered");
        assembleBundle(root / "offered", "2.1", "57", shared->server.url("/appcast.xml"),
                       shared->publicKey, true);
        shared->archive = *corvane::testing::readFile(root / "offered" / "Corvane-2.1.tar.xz");
    }
    static void TearDownTestSuite() {
        delete shared;
        shared = nullptr;
    }

    static std::string release(const std::string& arguments) {
        ProgramRun run = runOrFail(std::string(CORVANE_RELEASE_PROGRAM) + " " + arguments,
                                   shared->folder / "release.err");
        return run.output.substr(0, run.output.find_last_not_of('\n') + 1);
    }

    UpdateEndToEndTest() {
        fs::create_directories(installedFolder);
        assembleBundle(installedFolder, "2.0", "50", server.url("/appcast.xml"), shared->publicKey,
                       false);
        installedInfo = readAll(installedFolder / "Corvane.app/share/corvane/bundle.json");
    }

    /// Serves `archive` as 2.1 (57), described by corvane-release with `key`.
    void offer(const std::string& archive, const std::string& key) {
        corvane::testing::writeFile(folder / "served.tar.xz", archive);
        server.answer("/Corvane-2.1.tar.xz", {.body = archive});
        // The item describes the archive it was made from; a tampered copy replaces it after.
        const std::string item =
            release("feed-item " + quoted(shared->folder / "offered" / "Corvane-2.1.tar.xz") +
                    " --key " + quoted(shared->folder / key) + " --version 2.1 --build 57 --url " +
                    server.url("/Corvane-2.1.tar.xz"));
        server.answer("/appcast.xml", {.body = R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Corvane</title>
)" + item + "</channel></rss>\n"});
    }

    /// Runs the installed agent with `flag`; answers its JSON lines.
    std::vector<json> runInstalled(const std::string& flag, int expectedStatus) {
        const std::string environment = "env XDG_CONFIG_HOME=" + quoted(folder / "config") +
                                        " XDG_CACHE_HOME=" + quoted(folder / "cache") +
                                        " CORVANE_SETTINGS_SUITE=end-to-end CORVANE_LANGUAGE=en"
                                        " DBUS_SESSION_BUS_ADDRESS=disabled: ";
        ProgramRun run = runCommand(
            environment + quoted(installedFolder / "Corvane.app" / agentInBundle) + " " + flag,
            folder / "agent.err");
        EXPECT_EQ(run.status, expectedStatus) << run.errors;
        std::vector<json> lines;
        std::istringstream output(run.output);
        for (std::string line; std::getline(output, line);) {
            lines.push_back(json::parse(line, nullptr, false));
        }
        return lines;
    }

    json storedSettings() {
        return json::parse(readAll(folder / "config" / "corvane" / "end-to-end.json"), nullptr,
                           false);
    }

    /// Nothing but the installed bundle may remain beside it.
    std::vector<std::string> besideInstalled() {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(installedFolder)) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }

    struct Shared {
        // The releases name the feed's address, so one server serves every test.
        LoopbackHttpServer server;
        TemporaryDirectory folder;
        std::string publicKey;
        std::string archive;
    };
    static inline Shared* shared = nullptr;

    LoopbackHttpServer& server = shared->server;
    TemporaryDirectory folder;
    fs::path installedFolder = folder / "installed";
    std::string installedInfo;
};

TEST_F(UpdateEndToEndTest, GoodUpdateInstallsAndTheRelaunchedAgentRunsTheNewVersion) {
    offer(shared->archive, "release.key");
    const std::vector<json> lines = runInstalled("--update-install", 0);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0], json::parse(R"json({"version": "2.0 (50)", "offer": "2.1 (57)",
                                        "installed": true, "error": null})json"));
    // The second line comes from the agent started from the new bundle.
    EXPECT_EQ(lines[1], json::parse(R"json({"version": "2.1 (57)", "offer": null,
                                        "installed": false, "error": null})json"));
    EXPECT_EQ(readAll(installedFolder / "Corvane.app/share/corvane/bundle.json"),
              readAll(shared->folder / "offered/Corvane.app/share/corvane/bundle.json"));
    EXPECT_EQ(besideInstalled(), std::vector<std::string>{"Corvane.app"});
    // The new agent found its own version installed: no offer is left for the companion.
    const json settings = storedSettings();
    EXPECT_FALSE(settings.contains("updatesAvailable")) << settings;
    EXPECT_EQ(settings["updaterCanCheck"], true);
}

TEST_F(UpdateEndToEndTest, CheckOnlyPublishesTheOfferAndInstallsNothing) {
    offer(shared->archive, "release.key");
    auto downloads = [this] {
        const std::vector<std::string> requests = server.requests();
        return std::count(requests.begin(), requests.end(), "/Corvane-2.1.tar.xz");
    };
    const auto downloadsBefore = downloads();
    const std::vector<json> lines = runInstalled("--update-check", 0);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0]["offer"], "2.1 (57)");
    EXPECT_EQ(lines[0]["installed"], false);
    EXPECT_EQ(storedSettings()["updatesAvailable"], "2.1 (57)");
    EXPECT_EQ(readAll(installedFolder / "Corvane.app/share/corvane/bundle.json"), installedInfo);
    EXPECT_EQ(downloads(), downloadsBefore);
}

// A tampered archive takes the same refusal inside the updater; FeedUpdaterTest has it.
TEST_F(UpdateEndToEndTest, ForeignSignedArchiveLeavesTheBundleUntouched) {
    offer(shared->archive, "other.key");
    const std::vector<json> lines = runInstalled("--update-install", 1);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0]["installed"], false);
    EXPECT_EQ(lines[0]["error"], "the update's signature does not match its archive and key");
    EXPECT_EQ(readAll(installedFolder / "Corvane.app/share/corvane/bundle.json"), installedInfo);
    EXPECT_EQ(besideInstalled(), std::vector<std::string>{"Corvane.app"});
    // The bundle still runs.
    const std::vector<json> after = runInstalled("--update-check", 0);
    ASSERT_EQ(after.size(), 1u);
    EXPECT_EQ(after[0]["version"], "2.0 (50)");
}

// The agent starts and checks without its archive module, and refuses to install without it.
TEST_F(UpdateEndToEndTest, BundleWithoutItsArchiveModuleRefusesTheInstall) {
    const fs::path module = installedFolder / "Corvane.app" /
                            agentInBundle.parent_path().parent_path() / CORVANE_MODULE_DIR /
                            "corvane-update-archive.so";
    ASSERT_TRUE(fs::exists(module));
    fs::remove(module);
    offer(shared->archive, "release.key");
    const std::vector<json> checked = runInstalled("--update-check", 0);
    ASSERT_EQ(checked.size(), 1u);
    EXPECT_EQ(checked[0]["offer"], "2.1 (57)");
    const std::vector<json> lines = runInstalled("--update-install", 1);
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0]["installed"], false);
    EXPECT_EQ(lines[0]["error"], "the update cannot be installed: its archive module " +
                                     module.string() + " is missing (reinstall Corvane)");
    EXPECT_EQ(readAll(installedFolder / "Corvane.app/share/corvane/bundle.json"), installedInfo);
    EXPECT_EQ(besideInstalled(), std::vector<std::string>{"Corvane.app"});
}

TEST_F(UpdateEndToEndTest, AgentOutsideABundleSaysUpdatesAreOffAndWritesNothing) {
    const std::string environment = "env XDG_CONFIG_HOME=" + quoted(folder / "config") +
                                    " CORVANE_SETTINGS_SUITE=end-to-end"
                                    " DBUS_SESSION_BUS_ADDRESS=disabled: ";
    const ProgramRun run =
        runCommand(environment + CORVANE_AGENT_PROGRAM " --update-check", folder / "agent.err");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(json::parse(run.output, nullptr, false)["error"],
              "updates off: this agent is not embedded in Corvane.app");
    EXPECT_FALSE(fs::exists(folder / "config"));
}

}  // namespace
