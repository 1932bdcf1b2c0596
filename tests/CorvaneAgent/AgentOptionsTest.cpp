#include <gtest/gtest.h>

#include <vector>

#include "CorvaneAgent/AgentOptions.h"

namespace corvane {
namespace {

std::variant<AgentOptions, ArgumentError> parse(std::vector<std::string_view> arguments) {
    return parseAgentArguments(arguments);
}

TEST(AgentOptions, AcceptsEveryFlagInBothSpellings) {
    auto parsed = parse({"--snapshot", "--refreshes", "4", "--interval=0.5", "--open", "cpu",
                         "--open=sensors", "--procfs", "/", "--sysfs=/", "--menu-bar", "strip"});
    ASSERT_TRUE(std::holds_alternative<AgentOptions>(parsed));
    const auto& options = std::get<AgentOptions>(parsed);
    EXPECT_EQ(options.mode, AgentOptions::Mode::snapshot);
    EXPECT_EQ(options.refreshes, 4);
    EXPECT_EQ(options.interval, 0.5);
    EXPECT_EQ(options.openSections,
              (std::vector<MonitorSection>{MonitorSection::cpu, MonitorSection::sensors}));
    EXPECT_EQ(options.procfs, "/");
    EXPECT_EQ(options.menuBarHost, MenuBarHostRequest::strip);
}

TEST(AgentOptions, ModeFlagsAndHelpWinningOverWhatFollows) {
    using Mode = AgentOptions::Mode;
    const std::pair<std::vector<std::string_view>, Mode> rows[] = {
        {{"--update-check"}, Mode::updateCheck},
        {{"--update-install", "--update-install"}, Mode::updateInstall},
        {{"--stream", "--help", "--bogus"}, Mode::help},
        {{"--render=/tmp/meters", "--refreshes", "1", "--open", "storage"}, Mode::render},
    };
    for (const auto& [arguments, mode] : rows) {
        SCOPED_TRACE(arguments.front());
        auto parsed = parse(arguments);
        ASSERT_TRUE(std::holds_alternative<AgentOptions>(parsed));
        EXPECT_EQ(std::get<AgentOptions>(parsed).mode, mode);
    }
    const auto render = std::get<AgentOptions>(parse(rows[3].first));
    EXPECT_EQ(render.renderDirectory, "/tmp/meters");
    EXPECT_EQ(render.refreshes, 1);
}

TEST(AgentOptions, OnlyACopyWithoutAModeRunsTheMenuBar) {
    struct Row {
        std::vector<std::string> arguments;
        bool menuBar;
    };
    const Row rows[] = {
        {{}, true},
        {{"--menu-bar", "tray", "--procfs", "/proc"}, true},
        {{"--stream"}, false},
        {{"--render", "/tmp/meters"}, false},
        {{"--update-check"}, false},
        {{"--help"}, false},
        {{"--menu-bar", "nowhere"}, false},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(runsTheMenuBar(row.arguments), row.menuBar)
            << testing::PrintToString(row.arguments);
    }
}

TEST(AgentOptions, RefusesBadInputWithOneLine) {
    struct Row {
        const char* name;
        std::vector<std::string_view> arguments;
        const char* mentions;
    };
    const Row rows[] = {
        {"unknown flag", {"--snapshot", "--verbose"}, "--verbose"},
        {"missing count", {"--snapshot", "--refreshes"}, "--refreshes"},
        {"zero refreshes", {"--snapshot", "--refreshes", "0"}, "'0'"},
        {"negative interval", {"--stream", "--interval", "-1"}, "'-1'"},
        {"infinite interval", {"--stream", "--interval", "inf"}, "'inf'"},
        {"unknown section", {"--open", "disk"}, "'disk'"},
        {"missing directory", {"--procfs", "/nonexistent/corvane"}, "/nonexistent/corvane"},
        {"empty directory", {"--sysfs="}, "--sysfs"},
        {"two modes", {"--snapshot", "--stream"}, "--stream"},
        {"value on a switch", {"--snapshot=yes"}, "--snapshot"},
        {"refreshes without a headless mode", {"--refreshes", "2"}, "--refreshes"},
        {"update check and a snapshot", {"--update-check", "--snapshot"}, "--snapshot"},
        {"update check and install", {"--update-install", "--update-check"}, "--update-check"},
        {"value on an update switch", {"--update-install=now"}, "--update-install"},
        {"refreshes with an update check", {"--update-check", "--refreshes", "2"}, "--refreshes"},
        {"render without a directory", {"--render"}, "--render"},
        {"render with an empty directory", {"--render="}, "--render"},
        {"unknown menu bar", {"--menu-bar=dock"}, "'dock'"},
        {"render and a snapshot", {"--render", "/tmp/m", "--snapshot"}, "--snapshot"},
        {"not UTF-8", {"--snapshot", "--open", "\xff"}, "'\\xff' is not valid UTF-8"},
        {"a newline in an unknown flag", {"--bo\ngus"}, "'--bo\\x0agus'"},
        {"a file for a directory", {"--procfs", "/dev/null"}, "a directory"},
        {"a directory for a table", {"--snapshot", "--smc-table", "/"}, "a file"},
        {"a device for a table", {"--snapshot", "--smc-table=/dev/zero"}, "a file"},
        {"a file to render into", {"--render", "/dev/null"}, "a directory"},
        {"too many refreshes", {"--snapshot", "--refreshes", "1000001"}, "'1000001'"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        auto parsed = parse(row.arguments);
        ASSERT_TRUE(std::holds_alternative<ArgumentError>(parsed));
        const std::string& message = std::get<ArgumentError>(parsed).message;
        EXPECT_NE(message.find(row.mentions), std::string::npos) << message;
        EXPECT_EQ(message.find('\n'), std::string::npos);
    }
}

}  // namespace
}  // namespace corvane
