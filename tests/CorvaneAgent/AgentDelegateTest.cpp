#include "CorvaneAgent/AgentDelegate.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SettingsStore.h"
#include "Foundation/ObserverList.h"
#include "Platform/Linux/LinuxProcessTable.h"
#include "Platform/Log.h"
#include "tests/CorvaneAgent/FakeSystemStatistics.h"
#include "tests/CorvaneShared/FileTestSupport.h"
#include "tests/support/LocalSignalBus.h"
#include "tests/support/ManualScheduler.h"

namespace corvane {
namespace {

using testing::FakeReadings;
using testing::FakeSystemStatistics;
using testing::LocalSignalBus;
using testing::ManualScheduler;
using testing::TemporaryDirectory;
using Launch = AgentDelegate::Launch;
namespace fs = std::filesystem;

constexpr std::int32_t ownPid = 4242;

class RecordingLog final : public Log {
public:
    void write(LogLevel, std::string_view message) override { lines.emplace_back(message); }
    std::vector<std::string> lines;
};

class AgentDelegateTest : public ::testing::Test {
protected:
    class FakeMenuBar final : public MenuBarSession {
    public:
        FakeMenuBar(AgentDelegateTest& test, const SettingsChangeObserver& observe)
            : test(test), changes(observe([&test] { ++test.menuBarChangesSeen; })) {}
        void applyMeterSettings() override { ++test.meterSettingsApplied; }
        AgentDelegateTest& test;
        Subscription changes;
    };
    class FakeUpdates final : public UpdatesSession {
    public:
        explicit FakeUpdates(const bool& busy) : busy(busy) {}
        bool isBusy() const override { return busy; }
        const bool& busy;
    };

    std::unique_ptr<AgentDelegate> makeDelegate(bool unitTestHost = false) {
        return std::make_unique<AgentDelegate>(AgentDelegate::Services{
            .settings = settings,
            .bus = bus,
            .suite = "test",
            .log = log,
            .mainQueue = scheduler,
            .processId = ownPid,
            .isUnitTestHost = unitTestHost,
            .shouldYieldToAnEarlierInstance =
                [this] {
                    steps.push_back("single instance");
                    return earlierCopyRuns;
                },
            .makeMonitor =
                [this] {
                    steps.push_back("monitor");
                    auto monitor = SystemMonitor::create(
                        {.settings = settings,
                         .runtime = scheduler.runtime(),
                         .statistics = std::make_unique<FakeSystemStatistics>(readings)});
                    monitor->start();
                    return monitor;
                },
            .makeMenuBar =
                [this](SystemMonitor&, const SettingsChangeObserver& observe) {
                    steps.push_back("menu bar");
                    return std::make_unique<FakeMenuBar>(*this, observe);
                },
            .startUpdates =
                [this] {
                    steps.push_back("updates");
                    return std::make_unique<FakeUpdates>(updatesBusy);
                },
            .observeSettingsChanges = [this](auto onChange) { return changes.add(onChange); },
            .languageIsStale = [this] { return languageStale; },
            .applyLanguageChoice = [this] { steps.push_back("language applied"); },
            .launch =
                [this](const DetachedLaunch& launch) {
                    launches.push_back(launch);
                    return false;  // a failed start must not keep the agent alive
                },
            .executable = "/opt/corvane/corvane-agent",
            .arguments = {"--menu-bar", "tray"},
            .terminate = [this] { ++terminations; },
        });
    }

    void post(const char* signal, int times = 1) {
        for (int i = 0; i < times; ++i) {
            bus.post(std::string("test.") + signal);
        }
        scheduler.drainMainQueue();
    }

    InMemorySettingsStore settings;
    LocalSignalBus bus;
    ManualScheduler scheduler;
    RecordingLog log;
    FakeReadings readings;
    ObserverList<> changes;
    std::vector<std::string> steps;
    std::vector<DetachedLaunch> launches;
    bool earlierCopyRuns = false;
    bool languageStale = false;
    bool updatesBusy = false;
    int terminations = 0;
    int meterSettingsApplied = 0;
    int menuBarChangesSeen = 0;
};

TEST_F(AgentDelegateTest, LaunchRunsEveryStepInOrder) {
    settings.set("accentChoice", "teal");
    auto delegate = makeDelegate();
    EXPECT_EQ(delegate->applicationDidFinishLaunching(), Launch::running);
    EXPECT_EQ(steps,
              (std::vector<std::string>{"single instance", "monitor", "menu bar", "updates"}));
    EXPECT_EQ(log.lines, std::vector<std::string>{"up, pid 4242"});
    // Factory defaults answer without being written; the accent migration wrote its keys.
    EXPECT_EQ(settings.number("refreshInterval"), 1.0);
    EXPECT_FALSE(settings.storedValues().contains("refreshInterval"));
    EXPECT_GT(settings.storedValues().size(), 1u);
    ASSERT_NE(delegate->monitor(), nullptr);
    EXPECT_EQ(delegate->monitor()->refreshCount(), 1);
    EXPECT_FALSE(AgentDelegate::applicationShouldTerminateAfterLastWindowClosed());

    post("quitAgent");
    EXPECT_EQ(terminations, 1);
}

TEST_F(AgentDelegateTest, RefusalsAndTheUnitTestHost) {
    struct Row {
        const char* name;
        bool unitTestHost;
        bool earlierCopy;
        bool enabled;
        Launch launch;
        std::string line;
    };
    const std::string yielded = "another copy of this install is already up; exiting";
    const Row rows[] = {
        {"an earlier copy runs", false, true, true, Launch::yielded, yielded},
        {"switch off while an earlier copy runs", false, true, false, Launch::yielded, yielded},
        {"switch off", false, false, false, Launch::switchedOff,
         "the master switch is off; exiting"},
        {"unit-test host", true, true, false, Launch::unitTestHost, "up, pid 4242"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        settings.set("agentEnabled", row.enabled);
        earlierCopyRuns = row.earlierCopy;
        log.lines.clear();
        steps.clear();
        terminations = 0;
        auto delegate = makeDelegate(row.unitTestHost);
        EXPECT_EQ(delegate->applicationDidFinishLaunching(), row.launch);
        EXPECT_EQ(log.lines, std::vector{row.line});
        // The unit-test host stops before the single-instance check; the others right after it.
        EXPECT_EQ(steps, row.unitTestHost ? std::vector<std::string>{}
                                          : std::vector<std::string>{"single instance"});
        EXPECT_EQ(delegate->monitor(), nullptr);
        EXPECT_EQ(scheduler.timersStarted(), 0u);
        EXPECT_EQ(terminations, row.unitTestHost ? 0 : 1);
        if (row.unitTestHost) {
            // Only quitAgent is heard: a settings signal neither relaunches nor redraws.
            languageStale = true;
            post("settings");
            EXPECT_TRUE(launches.empty());
            post("quitAgent");
            EXPECT_EQ(terminations, 1);
        }
    }
}

TEST_F(AgentDelegateTest, SettingsSignalRelaunchesOnlyForAStaleLanguageWhileUpdatesAreIdle) {
    struct Row {
        const char* name;
        bool stale;
        bool busy;
        int posts;
        bool relaunches;
    };
    const Row rows[] = {
        {"language unchanged", false, false, 1, false},
        {"language changed while an update downloads", true, true, 1, false},
        {"language changed", true, false, 1, true},
        {"a storm of posts", false, false, 1000, false},
        {"a storm with the language changed", true, false, 1000, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        languageStale = false;
        launches.clear();
        terminations = meterSettingsApplied = 0;
        auto delegate = makeDelegate();
        ASSERT_EQ(delegate->applicationDidFinishLaunching(), Launch::running);
        steps.clear();
        languageStale = row.stale;
        updatesBusy = row.busy;
        post("settings", row.posts);
        EXPECT_EQ(meterSettingsApplied, row.relaunches ? 0 : 1);
        EXPECT_EQ(launches.size(), row.relaunches ? 1u : 0u);
        EXPECT_EQ(terminations, row.relaunches ? 1 : 0);
        if (row.relaunches) {
            EXPECT_EQ(steps, std::vector<std::string>{"language applied"});
            EXPECT_EQ(launches[0], relaunchCommand(ownPid, "/opt/corvane/corvane-agent",
                                                   {"--menu-bar", "tray"}));
            // Signals that arrive before the loop ends change nothing.
            post("settings");
            EXPECT_EQ(launches.size(), 1u);
        }
    }
}

TEST_F(AgentDelegateTest, SettingsChangeReachesTheMonitorAndTheMenuBar) {
    auto delegate = makeDelegate();
    ASSERT_EQ(delegate->applicationDidFinishLaunching(), Launch::running);
    ASSERT_EQ(scheduler.activeTimers().size(), 1u);
    settings.set("refreshInterval", 2.5);
    changes.notify();
    ASSERT_EQ(scheduler.activeTimers().size(), 1u);
    EXPECT_EQ(scheduler.activeTimers()[0].interval, 2.5);
    EXPECT_EQ(menuBarChangesSeen, 1);
    delegate.reset();
    EXPECT_TRUE(changes.empty());
}

std::vector<ProcessScan::Entry> copiesIn(const char* tree) {
    const LinuxProcessTable table(fs::path(CORVANE_FIXTURES) / tree / "proc", 100);
    return ProcessScan::runningAgents(table, 1000);
}

TEST(SingleInstance, EarliestCopyStaysAndLowestPidBreaksTies) {
    using std::chrono::system_clock;
    const auto at = [](int seconds) {
        return system_clock::time_point(std::chrono::seconds(seconds));
    };
    struct Row {
        const char* name;
        std::int32_t me;
        std::vector<ProcessScan::Entry> copies;
        bool yields;
    };
    const std::vector<ProcessScan::Entry> startUnknown = {{10, at(5), "/a/corvane-agent"},
                                                          {20, std::nullopt, "/b/corvane-agent"}};
    const Row rows[] = {
        {"same start, lower pid stays", 4100, copiesIn("agent-copies-equal-start"), false},
        {"same start, higher pid yields", 4200, copiesIn("agent-copies-equal-start"), true},
        {"own copy not listed", 5200, copiesIn("agent-copies-renamed-self"), false},
        {"the only listed copy", 5100, copiesIn("agent-copies-renamed-self"), false},
        {"earlier copy elsewhere on disk", 6200, copiesIn("agent-copies-elsewhere"), true},
        {"found through its command line", 6400, copiesIn("agent-copies-elsewhere"), true},
        {"the earliest copy", 6300, copiesIn("agent-copies-elsewhere"), false},
        {"no boot time: lower pid stays", 7100, copiesIn("agent-copies-no-boot-time"), false},
        {"no boot time: higher pid yields", 7200, copiesIn("agent-copies-no-boot-time"), true},
        {"unreadable list", 1, copiesIn("no-such-tree"), false},
        {"own start unknown, other later", 20, startUnknown, true},
        {"other start unknown, higher pid", 10, startUnknown, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(shouldYieldToAnEarlierInstance(row.me, row.copies), row.yields);
    }
}

TEST(Relaunch, HostilePathStartsAgainWithSameArgumentsAfterTheProcessEnds) {
    TemporaryDirectory root;
    const fs::path folder = root / "it's \"odd\" $HOME; touch pwned";
    fs::create_directories(folder);
    const fs::path program = folder / "corvane-agent `touch pwned` $(touch pwned)";
    std::ofstream(program) << "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$(dirname \"$0\")/ran\"\n";
    fs::permissions(program, fs::perms::owner_all);

    // A process that lives until the test closes its pipe stands in for the old agent.
    int lifeline[2];
    ASSERT_EQ(::pipe2(lifeline, O_CLOEXEC), 0);
    const pid_t old = ::fork();
    if (old == 0) {
        char byte;
        ::close(lifeline[1]);
        static_cast<void>(::read(lifeline[0], &byte, 1));
        ::_exit(0);
    }
    ::close(lifeline[0]);

    const DetachedLaunch launch =
        relaunchCommand(old, program.string(), {"--stream", "two words", "$HOME", ";"});
    std::vector<std::string> arguments = launch.arguments;
    arguments.insert(arguments.begin(), launch.program);
    std::vector<char*> argv;
    for (std::string& argument : arguments) {
        argv.push_back(argument.data());
    }
    argv.push_back(nullptr);
    const pid_t shell = ::fork();
    if (shell == 0) {
        static_cast<void>(::chdir(root.path().c_str()));
        ::execv(argv[0], argv.data());
        ::_exit(127);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    EXPECT_FALSE(fs::exists(folder / "ran")) << "started before the old process ended";

    ::close(lifeline[1]);
    ::waitpid(old, nullptr, 0);
    int status = 0;
    ASSERT_EQ(::waitpid(shell, &status, 0), shell);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(testing::readFile(folder / "ran"), "--stream\ntwo words\n$HOME\n;\n");
    EXPECT_FALSE(fs::exists(root / "pwned") || fs::exists(folder / "pwned"));
}

}  // namespace
}  // namespace corvane
