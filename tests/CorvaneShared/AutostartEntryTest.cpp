#include "CorvaneShared/AutostartEntry.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "CorvaneShared/DesktopEntry.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::TemporaryDirectory;

TEST(AutostartEntry, ContentsQuoteTheAgentsPathForExecAndStringRules) {
    const fs::path agent = R"(/home/me/My "Apps"/$HOME\100%/corvane-agent)";
    EXPECT_EQ(AutostartEntry::contents(agent),
              "[Desktop Entry]\n"
              "Type=Application\n"
              "Version=1.4\n"
              "Name=Corvane\n"
              "Comment=System monitor in the menu bar\n"
              R"(Exec="/home/me/My \\"Apps\\"/\\$HOME\\\\100%%/corvane-agent")"
              "\n"
              R"(TryExec=/home/me/My "Apps"/$HOME\\100%/corvane-agent)"
              "\n"
              "Terminal=false\n"
              "X-GNOME-Autostart-enabled=true\n");
}

TEST(AutostartEntry, FolderFollowsXdgConfigHome) {
    const auto noAccount = [] { return std::optional<std::string>(); };
    EXPECT_EQ(AutostartEntry::directory(
                  [](const char* name) -> const char* {
                      return std::string_view(name) == "XDG_CONFIG_HOME" ? "/x/config" : "/h";
                  },
                  noAccount),
              fs::path("/x/config/autostart"));
    EXPECT_EQ(AutostartEntry::directory(
                  [](const char* name) -> const char* {
                      return std::string_view(name) == "HOME" ? "/h" : "relative";
                  },
                  noAccount),
              fs::path("/h/.config/autostart"));
}

TEST(AutostartEntry, OnOffAndStatusRoundTrip) {
    TemporaryDirectory config;
    const fs::path entry = AutostartEntry::file(config / "autostart", "io.corvane.Corvane.Agent");
    const fs::path agent = config / "My App $1" / "corvane-agent";
    using AutostartEntry::State;

    EXPECT_EQ(AutostartEntry::status(entry, agent).state, State::off);
    ASSERT_EQ(AutostartEntry::install(entry, agent), std::nullopt);
    EXPECT_EQ(AutostartEntry::status(entry, agent).state, State::on);
    EXPECT_EQ(fs::status(entry).permissions() & fs::perms::all,
              fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read |
                  fs::perms::others_read);
    // What a launcher reads back is the one agent argument.
    const auto read = DesktopEntries::read(entry);
    ASSERT_TRUE(read.has_value());
    EXPECT_EQ(DesktopEntries::commandLine(*read), std::vector<std::string>{agent.string()});
    EXPECT_EQ(testing::namesStartingWith(entry.parent_path(), ""),
              std::set<std::string>{"io.corvane.Corvane.Agent.desktop"});

    const auto other = AutostartEntry::status(entry, "/opt/corvane/bin/corvane-agent");
    EXPECT_EQ(other.state, State::elsewhere);
    EXPECT_EQ(other.program, agent.string());

    ASSERT_EQ(AutostartEntry::remove(entry), std::nullopt);
    EXPECT_EQ(AutostartEntry::status(entry, agent).state, State::off);
    EXPECT_EQ(AutostartEntry::remove(entry), std::nullopt);
}

TEST(AutostartEntry, AnEntryTheUserSwitchedOffReadsOff) {
    TemporaryDirectory config;
    const fs::path entry = config / "agent.desktop";
    for (const char* key : {"Hidden=true", "X-GNOME-Autostart-enabled=false"}) {
        SCOPED_TRACE(key);
        testing::writeFile(
            entry, std::string("[Desktop Entry]\nExec=/usr/bin/corvane-agent\n") + key + "\n");
        EXPECT_EQ(AutostartEntry::status(entry, "/usr/bin/corvane-agent").state,
                  AutostartEntry::State::off);
    }
}

TEST(AutostartEntry, FindsTheAgentOfTheBundleOrBesideTheCompanion) {
    TemporaryDirectory root;
    const fs::path app = root / "Corvane.app";
    const fs::path agentBundle = app / "Contents/Library/LoginItems/CorvaneAgent.app";
    fs::create_directories(app / "share/corvane");
    fs::create_directories(agentBundle / "share/corvane");
    fs::create_directories(agentBundle / "bin");
    fs::create_directories(app / "bin");
    testing::writeFile(app / "share/corvane/bundle.json",
                       R"({"identifier": "io.corvane.Corvane"})");
    testing::writeFile(agentBundle / "share/corvane/bundle.json",
                       R"({"identifier": "a", "executable": "bin/corvane-agent"})");
    testing::writeFile(agentBundle / "bin/corvane-agent", "");
    EXPECT_EQ(AutostartEntry::agentOfCompanion(app / "bin/corvanectl"),
              agentBundle / "bin/corvane-agent");

    const fs::path prefix = root / "usr";
    fs::create_directories(prefix / "bin");
    EXPECT_EQ(AutostartEntry::agentOfCompanion(prefix / "bin/corvanectl"), std::nullopt);
    testing::writeFile(prefix / "bin/corvane-agent", "");
    EXPECT_EQ(AutostartEntry::agentOfCompanion(prefix / "bin/corvanectl"),
              prefix / "bin/corvane-agent");
}

}  // namespace
}  // namespace corvane
