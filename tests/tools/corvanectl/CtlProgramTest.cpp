#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <nlohmann/json.hpp>

#include "tests/support/ProgramRun.h"

namespace {

namespace fs = std::filesystem;
using corvane::testing::ProgramRun;
using corvane::testing::readAll;
using corvane::testing::runCommand;
using nlohmann::json;

const std::string ctl = CORVANE_CTL_PROGRAM;

/// Runs corvanectl and corvane-agent with a settings folder of this test's own.
class CtlProgramTest : public ::testing::Test {
protected:
    void SetUp() override {
        configHome = fs::temp_directory_path() / ("corvanectl-test-" + std::to_string(::getpid()));
        fs::create_directories(configHome);
        ::setenv("XDG_CONFIG_HOME", configHome.c_str(), 1);
        ::setenv("CORVANE_SETTINGS_SUITE", "ctl-test", 1);
    }
    void TearDown() override { fs::remove_all(configHome); }

    fs::path settingsFile() const { return configHome / "corvane" / "ctl-test.json"; }

    /// Runs `command` in a shell.
    ProgramRun run(const std::string& command) {
        return runCommand(command, configHome / "stderr");
    }

    /// Waits until a match rule on the session bus contains `fragment`: a subscription is in
    /// place.
    bool waitForMatchRule(const std::string& fragment) {
        for (int attempt = 0; attempt < 250; ++attempt) {
            if (run("dbus-send --session --print-reply --dest=org.freedesktop.DBus "
                    "/org/freedesktop/DBus org.freedesktop.DBus.Debug.Stats.GetAllMatchRules")
                    .output.find(fragment) != std::string::npos) {
                return true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
        return false;
    }

    fs::path configHome;
};

/// `corvanectl watch` in a child process of a suite of its own, its output on a pipe. Reads
/// block; the test's time limit ends a wait for a line that never comes.
class Watcher {
public:
    // The shell prints its process number, which corvanectl then takes over.
    explicit Watcher(const std::string& suite)
        : pipe(::popen(
              ("echo $$; CORVANE_SETTINGS_SUITE=" + suite + " exec " + ctl + " watch").c_str(),
              "r")),
          pid(std::stoi(readLine())) {}
    ~Watcher() {
        ::kill(pid, SIGTERM);
        ::pclose(pipe);
    }

    std::string readLine() {
        char line[256];
        return std::fgets(line, sizeof line, pipe) != nullptr ? line : "";
    }

private:
    FILE* pipe;
    pid_t pid;
};

TEST_F(CtlProgramTest, WatchPrintsEachPostOfItsOwnSuiteOnce) {
    Watcher watcher("ctl-a");
    // menuBarChanged is subscribed last, after every other signal.
    ASSERT_TRUE(waitForMatchRule("s_ctl_2da_2emenuBarChanged")) << "run under dbus-run-session";
    // Each post has reached the bus when its process ends, so they arrive in this order.
    EXPECT_EQ(run("CORVANE_SETTINGS_SUITE=ctl-a " + ctl + " post settings").status, 0);
    EXPECT_EQ(run("CORVANE_SETTINGS_SUITE=ctl-b " + ctl + " post settings").status, 0);
    EXPECT_EQ(run("CORVANE_SETTINGS_SUITE=ctl-a " + ctl + " post menuBarChanged").status, 0);
    EXPECT_EQ(watcher.readLine(), "settings\n");
    EXPECT_EQ(watcher.readLine(), "menuBarChanged\n");
}

TEST_F(CtlProgramTest, StoredSettingsKeepTheirTypesAndChangeTheAgentsPlan) {
    auto smcScope = [&] {
        ProgramRun snapshot =
            run(std::string(CORVANE_AGENT_PROGRAM) + " --snapshot --interval 0.01");
        return json::parse(snapshot.output, nullptr, false)["plan"]["smcScope"];
    };
    ASSERT_EQ(run(ctl + " set sensorsReadout off").status, 0);
    EXPECT_EQ(smcScope(), "menuBar");  // the CPU meter's temperature readout
    ASSERT_EQ(run(ctl + " set showCPUItem false").status, 0);
    EXPECT_EQ(smcScope(), "none");

    ASSERT_EQ(run(ctl + " set refreshInterval 2").status, 0);
    ASSERT_EQ(run(ctl + " set language 2 --string").status, 0);
    EXPECT_EQ(json::parse(readAll(settingsFile())),
              json::parse(R"({"sensorsReadout": "off", "showCPUItem": false,
                              "refreshInterval": 2.0, "language": "2"})"));
    EXPECT_EQ(run(ctl + " get refreshInterval").output, "2\n");
    ASSERT_EQ(run(ctl + " delete refreshInterval").status, 0);
    EXPECT_EQ(run(ctl + " get refreshInterval").output, "1\n");  // the factory default again
    // Stored values over factory defaults.
    EXPECT_NE(run(ctl + " list").output.find("\nlanguage = \"2\"\nmenuBarOrder = \"storage,"),
              std::string::npos);
}

TEST_F(CtlProgramTest, RefusesWithOneLineAndStatusTwoWritingNothing) {
    // A file nested 100,000 levels deep once took the program down with the stack.
    const std::string deep =
        R"({"a": 1, "deep": )" + std::string(100'000, '[') + std::string(100'000, ']') + "}";
    for (const std::string& content : {std::string("{not json"), deep}) {
        SCOPED_TRACE(content.substr(0, 20));
        fs::create_directories(settingsFile().parent_path());
        std::ofstream(settingsFile()) << content;
        for (const char* arguments :
             {"", "frobnicate", "get a b", "set showCPUItem", "set key maybe --bool",
              "set key 1 --bool --double", "post settings quitAgent", "watch Settings",
              "set showCPUItem false", "get showCPUItem", "list"}) {
            SCOPED_TRACE(arguments);
            ProgramRun result = run(ctl + " " + arguments);
            EXPECT_EQ(result.status, 2);
            EXPECT_TRUE(result.output.empty());
            EXPECT_TRUE(result.errors.starts_with("corvanectl: ")) << result.errors;
            EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1);
        }
        EXPECT_EQ(readAll(settingsFile()), content);
        EXPECT_EQ(std::distance(fs::directory_iterator(settingsFile().parent_path()), {}), 1);
        fs::remove_all(settingsFile().parent_path());
    }
    // A sound file, and command lines that are wrong in themselves.
    const std::string content = R"({"a": 1})";
    fs::create_directories(settingsFile().parent_path());
    std::ofstream(settingsFile()) << content;
    for (const char* arguments :
         {"get \"$(printf 'a\\377')\"", "set \"$(printf 'k\\303(')\" 1",
          "set key \"$(printf '\\377')\" --string", "set \"$(printf 'k\\nx')\"",
          "set refreshInterval 1e999 --double", "set key nan --double", "set key --bool", "delete",
          "watch \"$(printf 'sett\\nings')\"", "--verbose list", "autostart maybe"}) {
        SCOPED_TRACE(arguments);
        ProgramRun result = run(ctl + " " + arguments);
        EXPECT_EQ(result.status, 2);
        EXPECT_TRUE(result.output.empty());
        EXPECT_TRUE(result.errors.starts_with("corvanectl: ")) << result.errors;
        EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1) << result.errors;
    }
    EXPECT_EQ(readAll(settingsFile()), content);
    EXPECT_EQ(std::distance(fs::directory_iterator(settingsFile().parent_path()), {}), 1);
    // The settings file as something else than a file: a FIFO was once waited on for ever.
    for (const bool fifo : {true, false}) {
        SCOPED_TRACE(fifo ? "fifo" : "directory");
        fs::remove_all(settingsFile());
        ASSERT_TRUE(fifo ? ::mkfifo(settingsFile().c_str(), 0600) == 0
                         : fs::create_directory(settingsFile()));
        for (const char* arguments : {"get a", "set a 2", "list"}) {
            ProgramRun result = run(ctl + " " + arguments);
            EXPECT_EQ(result.status, 2) << arguments;
            EXPECT_TRUE(result.output.empty());
            EXPECT_EQ(std::count(result.errors.begin(), result.errors.end(), '\n'), 1)
                << result.errors;
        }
        EXPECT_EQ(std::distance(fs::directory_iterator(settingsFile().parent_path()), {}), 1);
    }
}

}  // namespace
