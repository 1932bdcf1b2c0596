#include "CorvaneShared/SharedSettings.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "CorvaneShared/BuildInfo.h"
#include "CorvaneShared/JSONFileSettingsStore.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;

const std::string agentFileName = std::string(buildinfo::agentBundleIdentifier) + ".json";

TEST(SharedSettings, SuiteNameComesFromTheEnvironmentWhenPresent) {
    struct Row {
        const char* name;
        const char* environmentValue;
        std::string expected;
    };
    const std::vector<Row> rows = {
        {"unset", nullptr, "GROUP.app"},
        {"set", "test.suite", "test.suite"},
        {"set but empty", "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(SharedSettings::resolveSuiteName(row.environmentValue, "GROUP.app"),
                  row.expected);
    }
}

TEST(SharedSettings, SuiteNameIsUsableOnlyAsAFileName) {
    const std::size_t longest = JSONFileSettingsStore::maximumFileNameLength - 5;
    struct Row {
        const char* name;
        std::string suite;
        bool isUsable;
    };
    const std::vector<Row> rows = {
        {"application group", SharedSettings::appGroupIdentifier(), true},
        {"longest name", std::string(longest, 'a'), true},
        {"empty", "", false},
        {"dot", ".", false},
        {"dot dot", "..", false},
        {"slash", "a/b", false},
        {"embedded NUL", std::string("a\0b", 3), false},
        {"one byte too long", std::string(longest + 1, 'a'), false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(SharedSettings::isUsableSuiteName(row.suite), row.isUsable);
    }
}

TEST(SharedSettings, OpenStoreFallsBackToTheAgentsOwnFile) {
    struct Row {
        const char* name;
        std::string suite;
        std::string expectedFile;
    };
    const std::vector<Row> rows = {
        {"usable name", "test.suite", "test.suite.json"},
        // Which names are unusable is SuiteNameIsUsableOnlyAsAFileName's; one stands for all.
        {"unusable name", "sub/suite", agentFileName},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        TemporaryDirectory directory;
        const fs::path folder = directory / "corvane";
        std::unique_ptr<SettingsStore> store = SharedSettings::openStore(row.suite, folder);
        ASSERT_TRUE(store->set("probe", true));
        EXPECT_EQ(testing::namesStartingWith(folder, ""),
                  (std::set<std::string>{row.expectedFile, row.expectedFile + ".lock"}));
        EXPECT_EQ(JSONFileSettingsStore(folder / row.expectedFile).storedValues(),
                  SettingValue({{"probe", true}}));
    }
}

TEST(SharedSettings, SettingsDirectoryFollowsTheXDGRule) {
    struct Row {
        const char* name;
        std::map<std::string, std::string> environment;
        std::optional<std::string> accountHome;
        std::optional<fs::path> expected;
    };
    const std::optional<std::string> account = "/account";
    const std::vector<Row> rows = {
        {"absolute XDG_CONFIG_HOME",
         {{"XDG_CONFIG_HOME", "/x"}, {"HOME", "/h"}},
         account,
         "/x/corvane"},
        {"relative XDG_CONFIG_HOME",
         {{"XDG_CONFIG_HOME", "x"}, {"HOME", "/h"}},
         account,
         "/h/.config/corvane"},
        {"empty XDG_CONFIG_HOME",
         {{"XDG_CONFIG_HOME", ""}, {"HOME", "/h"}},
         account,
         "/h/.config/corvane"},
        {"no HOME", {}, account, "/account/.config/corvane"},
        {"relative HOME", {{"HOME", "h"}}, account, "/account/.config/corvane"},
        {"no home anywhere", {}, std::nullopt, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const auto environment = [&row](const char* name) -> const char* {
            auto found = row.environment.find(name);
            return found == row.environment.end() ? nullptr : found->second.c_str();
        };
        const auto accountHome = [&row] { return row.accountHome; };
        EXPECT_EQ(SharedSettings::settingsDirectory(environment, accountHome), row.expected);
    }
}

TEST(SharedSettings, RegisteredDefaultsAnswerReadsButAreNeverWritten) {
    TemporaryDirectory directory;
    const fs::path path = directory / "settings.json";
    JSONFileSettingsStore agent(path);
    agent.registerDefaults(SharedSettings::factoryDefaults());

    EXPECT_EQ(agent.number("refreshInterval"), 1.0);
    EXPECT_EQ(agent.string("menuBarOrder"), "storage,sensors,memory,cpu");
    EXPECT_TRUE(agent.object("memoryReadout").is_null());
    EXPECT_FALSE(fs::exists(path));

    // The application's write overrides the default at the agent's next read.
    JSONFileSettingsStore application(path);
    ASSERT_TRUE(application.set("refreshInterval", 2.0));
    EXPECT_EQ(agent.number("refreshInterval"), 2.0);
    EXPECT_EQ(agent.storedValues(), SettingValue({{"refreshInterval", 2.0}}));
    ASSERT_TRUE(application.remove("refreshInterval"));
    EXPECT_EQ(agent.number("refreshInterval"), 1.0);
}

// The process-wide values read the real environment once, so they are checked in a child
// whose environment is set before anything reads it.
TEST(SharedSettings, SuiteFromTheEnvironmentNamesTheStoreAndTheSignals) {
    TemporaryDirectory directory;
    const int status = testing::exitStatusOfChild([&directory] {
        if (::setenv(SharedSettings::suiteEnvironmentVariable, "isolated.suite", 1) != 0 ||
            ::setenv("XDG_CONFIG_HOME", directory.path().c_str(), 1) != 0) {
            return 10;
        }
        if (SharedSettings::signalName(SharedSettings::Signal::checkForUpdates) !=
            "isolated.suite.checkForUpdates") {
            return 11;
        }
        const bool written = SharedSettings::store().set("shared", true) &&
                             SharedSettings::standardStore().set("own", true);
        return written ? 0 : 12;
    });
    ASSERT_EQ(status, 0);
    const fs::path folder = directory / "corvane";
    EXPECT_EQ(JSONFileSettingsStore(folder / "isolated.suite.json").storedValues(),
              SettingValue({{"shared", true}}));
    EXPECT_EQ(JSONFileSettingsStore(folder / agentFileName).storedValues(),
              SettingValue({{"own", true}}));
}

}  // namespace
}  // namespace corvane
