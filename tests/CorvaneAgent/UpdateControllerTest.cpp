#include "CorvaneAgent/UpdateController.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "CorvaneShared/BundleDirectory.h"
#include "tests/CorvaneShared/BundleTestSupport.h"
#include "tests/CorvaneShared/FakeEnvironment.h"
#include "tests/CorvaneShared/FileTestSupport.h"
#include "tests/support/LocalSignalBus.h"
#include "tests/support/ManualScheduler.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::FakeEnvironment;
using testing::LocalSignalBus;
using testing::ManualScheduler;
using testing::TemporaryDirectory;
using testing::writeBundleInfo;

class RecordingLog final : public Log {
public:
    void write(LogLevel level, std::string_view message) override {
        lines.push_back((level == LogLevel::error ? "error: " : "") + std::string(message));
    }
    std::vector<std::string> lines;
};

class FakeUpdater final : public Updater {
public:
    std::optional<std::string> startUpdater() override { return startError; }
    bool canCheckForUpdates() const override { return canCheck; }
    Subscription observeCanCheckForUpdates(std::function<void(bool)> observer) override {
        observer(canCheck);
        canCheckObserver = std::make_shared<std::function<void(bool)>>(std::move(observer));
        return Subscription([this] { canCheckObserver.reset(); });
    }
    void checkForUpdates() override { ++checks; }
    bool automaticallyChecksForUpdates() const override { return automatic; }
    void setAutomaticallyChecksForUpdates(bool value) override {
        automatic = value;
        ++automaticWrites;
    }

    void setCanCheck(bool value) {
        canCheck = value;
        if (canCheckObserver) {
            (*canCheckObserver)(value);
        }
    }

    std::optional<std::string> startError;
    bool canCheck = true;
    bool automatic = false;
    int automaticWrites = 0;
    int checks = 0;
    std::shared_ptr<std::function<void(bool)>> canCheckObserver;
};

// Each process ends after the given number of terminate-then-wait polls; -1: never by itself.
class FakeApplications final : public RunningApplications {
public:
    std::vector<pid_t> runningFrom(const fs::path& bundle) override {
        askedFor = bundle;
        std::vector<pid_t> pids;
        for (const auto& [pid, polls] : pollsToEnd) {
            pids.push_back(pid);
        }
        return pids;
    }
    void terminate(pid_t process) override { terminated.push_back(process); }
    bool isTerminated(pid_t process) override {
        return killed.contains(process) || pollsToEnd.at(process) == 0;
    }
    void forceTerminate(pid_t process) override { killed.insert(process); }

    std::map<pid_t, int> pollsToEnd;
    std::optional<fs::path> askedFor;
    std::vector<pid_t> terminated;
    std::set<pid_t> killed;
};

class UpdateControllerTest : public ::testing::Test {
protected:
    UpdateControllerTest() {
        host = folder / "Corvane.app";
        agent = host / "Contents" / "Library" / "LoginItems" / "CorvaneAgent.app";
        writeBundleInfo(host, R"({"identifier": "io.test.App", "SUPublicEDKey": "KEY"})");
        setAgentVersion("2.0", "50");
    }

    void setAgentVersion(const std::string& version, const std::string& build) {
        writeBundleInfo(agent, R"({"identifier": "io.test.Agent", "version": ")" + version +
                                   R"(", "build": ")" + build + R"("})");
    }

    std::unique_ptr<UpdateController> makeController(std::optional<fs::path> agentBundle) {
        return std::make_unique<UpdateController>(UpdateController::Services{
            .settings = settings,
            .bus = bus,
            .suite = "suite",
            .log = log,
            .environment = environment.lookup(),
            .agentBundle = std::move(agentBundle),
            .makeUpdater = [this](const UpdaterSetup& setup) -> std::unique_ptr<Updater> {
                setups.push_back(setup.hostBundle.string() + " | " +
                                 setup.applicationBundle.string());
                auto made = std::make_unique<FakeUpdater>();
                made->startError = startError;
                updater = made.get();
                return made;
            },
            .bringToFront = [this] { ++broughtToFront; },
            .applications = applications,
            .clock = scheduler,
            .runEventsFor =
                [this](double seconds) {
                    ++pollsRun;
                    for (auto& [pid, polls] : applications.pollsToEnd) {
                        polls = polls > 0 ? polls - 1 : polls;
                    }
                    scheduler.advance(seconds);
                },
        });
    }

    std::unique_ptr<UpdateController> startedController() {
        auto controller = makeController(agent);
        controller->start();
        return controller;
    }

    TemporaryDirectory folder;
    fs::path host;
    fs::path agent;
    InMemorySettingsStore settings;
    LocalSignalBus bus;
    RecordingLog log;
    FakeEnvironment environment;
    FakeApplications applications;
    ManualScheduler scheduler;
    std::optional<std::string> startError;
    FakeUpdater* updater = nullptr;
    std::vector<std::string> setups;
    int broughtToFront = 0;
    int pollsRun = 0;
};

TEST_F(UpdateControllerTest, AgentOutsideAnAppStaysOffAndTouchesNoSetting) {
    for (const std::optional<fs::path>& bundle :
         {std::optional<fs::path>(), std::optional<fs::path>(folder / "build" / "a" / "b" / "c"),
          // Four levels up ends in .app but holds no bundle.
          std::optional<fs::path>(folder / "Empty.app" / "Contents" / "Library" / "LoginItems" /
                                  "CorvaneAgent.app")}) {
        log.lines.clear();
        auto controller = makeController(bundle);
        controller->start();
        EXPECT_EQ(log.lines, std::vector<std::string>{UpdateController::notEmbeddedMessage});
        EXPECT_FALSE(controller->hasUpdater());
    }
    EXPECT_EQ(settings.storedValues(), SettingValue::object());
    EXPECT_TRUE(setups.empty());
    EXPECT_TRUE(bus.subscriptions->empty());
}

TEST_F(UpdateControllerTest, DisabledRunOrMissingKeyWritesCannotCheckAndListensToNothing) {
    environment.variables["CORVANE_DISABLE_UPDATER"] = "1";
    settings.set("updaterCanCheck", true);
    auto controller = startedController();
    EXPECT_EQ(log.lines, std::vector<std::string>{UpdateController::disabledMessage});
    EXPECT_EQ(settings.object("updaterCanCheck"), false);
    EXPECT_TRUE(bus.subscriptions->empty());

    environment.variables.clear();
    writeBundleInfo(host, R"({"identifier": "io.test.App", "SUPublicEDKey": 7})");
    log.lines.clear();
    auto withoutKey = startedController();
    EXPECT_EQ(log.lines, std::vector<std::string>{UpdateController::disabledMessage});
    EXPECT_TRUE(setups.empty());
}

TEST_F(UpdateControllerTest, UpdaterThatFailsToStartLeavesEverythingAsItWas) {
    startError = "no feed";
    settings.set("updaterCanCheck", true);
    auto controller = startedController();
    EXPECT_EQ(log.lines, std::vector<std::string>{"error: Sparkle did not start: no feed"});
    EXPECT_FALSE(controller->hasUpdater());
    EXPECT_EQ(settings.object("updaterCanCheck"), true);
    EXPECT_TRUE(bus.subscriptions->empty());
    bus.post("suite.checkForUpdates");
    EXPECT_EQ(broughtToFront, 0);
}

TEST_F(UpdateControllerTest, StartedUpdaterUpdatesTheHostFromTheAgentAndMirrorsCanCheck) {
    settings.set("updatesCheckAutomatically", true);
    auto controller = startedController();
    ASSERT_TRUE(controller->hasUpdater());
    EXPECT_EQ(setups, std::vector<std::string>{host.string() + " | " + agent.string()});
    EXPECT_TRUE(log.lines.empty());
    EXPECT_TRUE(updater->automatic);
    EXPECT_EQ(settings.object("updaterCanCheck"), true);
    updater->setCanCheck(false);
    EXPECT_EQ(settings.object("updaterCanCheck"), false);
    updater->setCanCheck(true);
    EXPECT_EQ(settings.object("updaterCanCheck"), true);

    controller->start();
    EXPECT_EQ(setups.size(), 1u);
}

TEST_F(UpdateControllerTest, SettingsSignalSyncsAutomaticChecksOnlyWhenTheyDiffer) {
    auto controller = startedController();
    // A missing key reads as false, which the updater already has.
    EXPECT_EQ(updater->automaticWrites, 0);
    bus.post("suite.settings");
    EXPECT_EQ(updater->automaticWrites, 0);
    settings.set("updatesCheckAutomatically", true);
    bus.post("suite.settings");
    bus.post("suite.settings");
    EXPECT_EQ(updater->automaticWrites, 1);
    EXPECT_TRUE(updater->automatic);
    settings.set("updatesCheckAutomatically", "no");
    bus.post("suite.settings");
    EXPECT_EQ(updater->automaticWrites, 2);
    EXPECT_FALSE(updater->automatic);
    bus.post("other.settings");
    EXPECT_EQ(updater->automaticWrites, 2);
}

TEST_F(UpdateControllerTest, CheckSignalChecksOnlyWhenTheUpdaterCan) {
    auto controller = startedController();
    bus.post("suite.checkForUpdates");
    EXPECT_EQ(updater->checks, 1);
    EXPECT_EQ(broughtToFront, 1);
    updater->setCanCheck(false);
    bus.post("suite.checkForUpdates");
    EXPECT_EQ(updater->checks, 1);
    EXPECT_EQ(broughtToFront, 1);
    EXPECT_TRUE(log.lines.empty());

    // Signals after the controller is gone reach nothing.
    EXPECT_EQ(bus.subscriptions->size(), 2u);
    controller.reset();
    EXPECT_TRUE(bus.subscriptions->empty());
    bus.post("suite.checkForUpdates");
    bus.post("suite.settings");
    EXPECT_EQ(broughtToFront, 1);
}

TEST_F(UpdateControllerTest, SpentOfferIsRetiredAtStart) {
    struct Row {
        const char* offer;
        const char* version;
        const char* build;
        bool kept;
    };
    const std::vector<Row> rows = {
        {"2.1 (57)", "2.1", "57", false},
        {"2.1 (57)", "2.1", "60", false},
        {"2.1 (57)", "2.0", "50", true},
        // Without two readable builds only an identical text counts as installed.
        {"2.1", "2.1", "2.1", false},
        {"2.1", "2.1", "57", true},
        {"2.1 (57)", "2.1", "beta", true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.offer) + " running " + row.version + " (" + row.build + ")");
        setAgentVersion(row.version, row.build);
        settings.set("updatesAvailable", row.offer);
        const std::size_t postsBefore = bus.postsOf("suite.updateAvailable");
        auto controller = startedController();
        EXPECT_EQ(settings.string("updatesAvailable").has_value(), row.kept);
        EXPECT_EQ(bus.postsOf("suite.updateAvailable") - postsBefore, row.kept ? 0u : 1u);
    }
}

TEST_F(UpdateControllerTest, CheckOutcomesPublishTheOfferAndSkipRemovesIt) {
    auto controller = startedController();
    controller->didFindValidUpdate({.displayVersionString = "2.1", .versionString = "57"});
    EXPECT_EQ(settings.string("updatesAvailable"), "2.1 (57)");
    EXPECT_EQ(bus.postsOf("suite.updateAvailable"), 1u);

    controller->userDidMake(UpdateUserChoice::dismiss);
    controller->userDidMake(UpdateUserChoice::install);
    controller->didAbortWithError("the archive is truncated");
    EXPECT_EQ(settings.string("updatesAvailable"), "2.1 (57)");
    EXPECT_EQ(bus.postsOf("suite.updateAvailable"), 1u);

    controller->userDidMake(UpdateUserChoice::skip);
    EXPECT_FALSE(settings.string("updatesAvailable"));
    EXPECT_EQ(bus.postsOf("suite.updateAvailable"), 2u);

    controller->didFindValidUpdate({.displayVersionString = "57", .versionString = "57"});
    EXPECT_EQ(settings.string("updatesAvailable"), "57");
    controller->updaterDidNotFindUpdate("no build newer than 50");
    EXPECT_FALSE(settings.string("updatesAvailable"));
    EXPECT_EQ(log.lines,
              (std::vector<std::string>{
                  "update available: 2.1", "error: update aborted: the archive is truncated",
                  "update available: 57", "no update: no build newer than 50"}));
}

TEST_F(UpdateControllerTest, BusyFromDownloadUntilTheCycleEnds) {
    auto controller = startedController();
    EXPECT_FALSE(controller->isBusy());
    controller->willDownloadUpdate();
    EXPECT_TRUE(controller->isBusy());
    controller->didAbortWithError("network gone");
    EXPECT_TRUE(controller->isBusy());
    controller->didFinishUpdateCycle();
    EXPECT_FALSE(controller->isBusy());
    EXPECT_TRUE(controller->updaterShouldRelaunchApplication());
}

TEST_F(UpdateControllerTest, CompanionGetsFourSecondsThenIsKilled) {
    auto controller = startedController();
    controller->willInstallUpdate();  // the companion does not run: nothing to wait for
    EXPECT_EQ(applications.askedFor, host);
    EXPECT_EQ(pollsRun, 0);
    EXPECT_TRUE(applications.terminated.empty());

    applications.pollsToEnd = {{100, 3}, {200, -1}};
    const TimePoint before = scheduler.now();
    controller->willInstallUpdate();
    EXPECT_EQ(applications.terminated, (std::vector<pid_t>{100, 200}));
    EXPECT_EQ(applications.killed, std::set<pid_t>{200});
    EXPECT_EQ(pollsRun, 40);
    EXPECT_EQ(scheduler.now() - before, std::chrono::milliseconds(4000));

    applications.pollsToEnd = {{300, 2}};
    applications.killed.clear();
    pollsRun = 0;
    controller->willInstallUpdate();
    EXPECT_EQ(pollsRun, 2);
    EXPECT_TRUE(applications.killed.empty());
}

}  // namespace
}  // namespace corvane
