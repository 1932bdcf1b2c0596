#include "Platform/Qt/Updates/FeedUpdater.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "CorvaneShared/BundleDirectory.h"
#include "Platform/Qt/Updates/UpdateFeed.h"
#include "tests/CorvaneShared/FileTestSupport.h"
#include "tests/Platform/Updates/ArchiveBuilder.h"
#include "tests/support/LoopbackHttpServer.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;
using testing::ArchiveEntry;
using testing::buildArchive;
using testing::HttpResponse;
using testing::LoopbackHttpServer;
using testing::TemporaryDirectory;
using testing::TestKeys;

constexpr const char* agentPath = "Contents/Library/LoginItems/CorvaneAgent.app";

std::string bundleInfo(const std::string& identifier, const std::string& version,
                       const std::string& build, const std::string& extra = "") {
    return R"({"identifier": ")" + identifier + R"(", "version": ")" + version +
           R"(", "build": ")" + build + "\"" + extra + "}";
}

/// The entries of a whole product bundle: the main bundle's info and the agent inside it.
std::vector<ArchiveEntry> productEntries(const std::string& identifier, const std::string& version,
                                         const std::string& build) {
    const std::string agent = std::string("Corvane.app/") + agentPath;
    return {
        {.path = "Corvane.app/share/corvane/bundle.json",
         .content = bundleInfo(identifier, version, build)},
        {.path = agent + "/share/corvane/bundle.json",
         .content = bundleInfo("io.test.Agent", version, build, R"(, "executable": "bin/agent")")},
        {.path = agent + "/bin/agent", .content = "#!/bin/sh\n", .permissions = 0755},
    };
}

std::string feedItem(const std::string& version, const std::string& build, const std::string& url,
                     std::size_t length, const std::string& signature) {
    return "<item><title>Corvane " + version + "</title><sparkle:version>" + build +
           "</sparkle:version><sparkle:shortVersionString>" + version +
           "</sparkle:shortVersionString><description><![CDATA[<p>Notes " + version +
           "</p>]]></description><enclosure url=\"" + url + "\" length=\"" +
           std::to_string(length) + "\" type=\"application/octet-stream\" sparkle:edSignature=\"" +
           signature + "\"/></item>";
}

std::string feedOf(const std::string& items) {
    return R"(<?xml version="1.0" encoding="utf-8"?>
<rss version="2.0" xmlns:sparkle="http://www.andymatuschak.org/xml-namespaces/sparkle">
<channel><title>Corvane</title>)" +
           items + "</channel></rss>";
}

/// Whether the archive module is loaded into this process.
bool archiveModuleLoaded() {
    std::ifstream maps("/proc/self/maps");
    std::stringstream text;
    text << maps.rdbuf();
    return text.str().find(fs::path(CORVANE_ARCHIVE_MODULE).filename().string()) !=
           std::string::npos;
}

class RecordingDelegate final : public UpdaterDelegate {
public:
    void didFindValidUpdate(const UpdateItem& item) override {
        events.emplace_back("found " + item.displayVersionString + " (" + item.versionString + ")");
    }
    void updaterDidNotFindUpdate(const std::string& reason) override {
        events.emplace_back("none: " + reason);
    }
    void didAbortWithError(const std::string& description) override {
        events.emplace_back("abort: " + description);
        lastError = description;
    }
    void userDidMake(UpdateUserChoice choice) override {
        events.emplace_back(choice == UpdateUserChoice::install ? "install"
                            : choice == UpdateUserChoice::skip  ? "skip"
                                                                : "dismiss");
    }
    void willDownloadUpdate() override { events.emplace_back("download"); }
    void didFinishUpdateCycle() override { events.emplace_back("finished"); }
    bool updaterShouldRelaunchApplication() override { return true; }
    void willInstallUpdate() override { events.emplace_back("will install"); }

    std::vector<std::string> events;
    std::string lastError;
};

class ScriptedDriver final : public UpdateUserDriver {
public:
    void showUpdateFound(const UpdateItem& item, const std::string& installedVersion,
                         std::function<void(UpdateUserChoice)> reply) override {
        shown.push_back("offer " + item.displayVersionString + " over " + installedVersion);
        reply(choice);
    }
    void showUpToDate(const std::string& installedVersion) override {
        shown.push_back("up to date " + installedVersion);
    }
    void showDownloadStarted(const UpdateItem&, std::function<void()>) override {}
    void showDownloadProgress(std::uint64_t received, std::uint64_t) override {
        lastProgress = received;
    }
    void showInstalling() override {}
    void showInstalled(const UpdateItem& item) override {
        shown.push_back("installed " + item.displayVersionString);
    }
    void showError(const std::string& description) override {
        shown.push_back("error " + description);
    }
    void finish() override {
        ++finished;
        if (loop) {
            loop->quit();
        }
    }

    UpdateUserChoice choice = UpdateUserChoice::install;
    std::vector<std::string> shown;
    std::uint64_t lastProgress = 0;
    int finished = 0;
    QEventLoop* loop = nullptr;
};

class FeedUpdaterTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argc = 1;
        static char name[] = "corvane-qt-update-tests";
        static char* argv[] = {name, nullptr};
        static QCoreApplication application(argc, argv);
    }

    FeedUpdaterTest() {
        installBundle(host, "io.test.App", "2.0", "50",
                      R"(, "SUFeedURL": ")" + server.url("/appcast.xml") +
                          R"(", "SUPublicEDKey": ")" + keys.publicBase64() + "\"");
    }

    void installBundle(const fs::path& bundle, const std::string& identifier,
                       const std::string& version, const std::string& build,
                       const std::string& extra) {
        fs::create_directories(BundleDirectory::resourceDirectory(bundle));
        testing::writeFile(BundleDirectory::resourceDirectory(bundle) / "bundle.json",
                           bundleInfo(identifier, version, build, extra));
    }

    /// Serves `archive` and a feed offering it as 2.1 (57) beside an older item.
    void offer(const std::string& archive, const std::string& signature,
               std::optional<std::size_t> statedLength = std::nullopt, HttpResponse served = {}) {
        served.body = archive;
        server.answer("/Corvane-2.1.tar.xz", served);
        server.answer("/appcast.xml",
                      {.body = feedOf(feedItem("1.9", "45", server.url("/old.tar.xz"), 10, "x") +
                                      feedItem("2.1", "57", server.url("/Corvane-2.1.tar.xz"),
                                               statedLength.value_or(archive.size()), signature))});
    }

    std::unique_ptr<FeedUpdater> makeUpdater() {
        auto made = std::make_unique<FeedUpdater>(FeedUpdater::Services{
            .setup = {.hostBundle = host,
                      .applicationBundle = host / agentPath,
                      .delegate = delegate},
            .driver = driver,
            .ownStore = ownStore,
            .cacheDirectory = folder / "cache",
            .archiveModule = archiveModule,
            .launch =
                [this](const DetachedLaunch& launch) {
                    launches.push_back(launch);
                    return true;
                },
            .relaunchArguments = {"--update-check"},
            .quit = [this] { ++quits; },
            .firstScheduledCheck = std::chrono::milliseconds(0),
            .transferTimeout = std::chrono::seconds(5),
        });
        return made;
    }

    /// Runs one check the user asked for, to its end.
    void checkNow(FeedUpdater& updater) {
        ASSERT_TRUE(updater.canCheckForUpdates());
        updater.checkForUpdates();
        EXPECT_FALSE(updater.canCheckForUpdates());
        runCycle();
    }

    void runCycle() {
        QEventLoop loop;
        driver.loop = &loop;
        QTimer::singleShot(15000, &loop, [&loop] { loop.exit(1); });
        EXPECT_EQ(loop.exec(), 0) << "the update cycle did not finish";
        driver.loop = nullptr;
    }

    std::optional<std::string> installedBuild() const {
        const auto info = BundleDirectory::readInfo(host);
        return info ? info->build : std::nullopt;
    }

    /// Everything beside the host bundle: nothing may be left over from a refused update.
    std::vector<std::string> besideHost() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder.path())) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    LoopbackHttpServer server;
    TestKeys keys;
    TemporaryDirectory folder;
    fs::path host = folder / "Corvane.app";
    RecordingDelegate delegate;
    ScriptedDriver driver;
    InMemorySettingsStore ownStore;
    fs::path archiveModule = CORVANE_ARCHIVE_MODULE;
    std::vector<DetachedLaunch> launches;
    int quits = 0;
};

TEST_F(FeedUpdaterTest, GoodUpdateReplacesTheBundleAndRelaunchesTheAgentFromIt) {
    const std::string archive = buildArchive(productEntries("io.test.App", "2.1", "57"));
    offer(archive, keys.sign(archive));
    auto updater = makeUpdater();
    ASSERT_EQ(updater->startUpdater(), std::nullopt);
    // The archive code is loaded for the install only.
    EXPECT_FALSE(archiveModuleLoaded());
    checkNow(*updater);
    EXPECT_FALSE(archiveModuleLoaded());

    EXPECT_EQ(delegate.events, (std::vector<std::string>{"found 2.1 (57)", "install", "download",
                                                         "will install", "finished"}));
    EXPECT_EQ(driver.shown, (std::vector<std::string>{"offer 2.1 over 2.0", "installed 2.1"}));
    EXPECT_EQ(driver.lastProgress, archive.size());
    EXPECT_EQ(installedBuild(), "57");
    EXPECT_EQ(besideHost(), (std::vector<std::string>{"Corvane.app", "cache"}));
    EXPECT_TRUE(fs::is_empty(folder / "cache"));
    ASSERT_EQ(launches.size(), 1u);
    const std::vector<std::string>& arguments = launches[0].arguments;
    ASSERT_EQ(arguments.size(), 6u);
    EXPECT_EQ(launches[0].program, "/bin/sh");
    EXPECT_EQ(arguments[3], std::to_string(::getpid()));
    EXPECT_EQ(arguments[4], (host / agentPath / "bin" / "agent").string());
    EXPECT_EQ(arguments[5], "--update-check");
    EXPECT_EQ(quits, 1);
    EXPECT_TRUE(updater->canCheckForUpdates());
}

// One row for each step of the cycle that can refuse an update; the reasons each step gives are
// tested on their own in UpdateFilesTest.
TEST_F(FeedUpdaterTest, RefusedArchiveLeavesTheInstalledBundleUntouched) {
    const std::string good = buildArchive(productEntries("io.test.App", "2.1", "57"));
    std::string tampered = good;
    tampered[tampered.size() / 2] ^= 0x20;
    auto withEntry = [](std::vector<ArchiveEntry> entries, ArchiveEntry extra) {
        entries.push_back(std::move(extra));
        return buildArchive(entries);
    };
    const std::string escaping = withEntry(productEntries("io.test.App", "2.1", "57"),
                                           {.path = "Corvane.app/../escaped", .content = "x"});
    const std::string otherProduct = buildArchive(productEntries("io.other.App", "2.1", "57"));
    const std::string lowerBuild = buildArchive(productEntries("io.test.App", "1.0", "40"));
    std::vector<ArchiveEntry> agentless = productEntries("io.test.App", "2.1", "57");
    agentless.pop_back();
    const std::string noAgent = buildArchive(agentless);

    struct Row {
        const char* name;
        std::string archive;
        std::string error;
        std::optional<std::string> signature = std::nullopt;  // absent: the archive's own
        std::optional<std::size_t> statedLength = std::nullopt;
        HttpResponse served = {};
    };
    const std::vector<Row> rows = {
        {"tampered", tampered, "the update's signature does not match its archive and key",
         keys.sign(good)},
        {"truncated",
         good,
         "the downloaded update is " + std::to_string(good.size()) + " bytes (truncated)",
         {},
         good.size() + 100},
        {"longer than stated",
         good,
         "the download is longer than the " + std::to_string(good.size() - 1),
         {},
         good.size() - 1},
        {"cut mid-download", good, "the download failed", {}, {}, {.cutAfter = good.size() / 2}},
        {"dot-dot path", escaping,
         "the update archive holds a path outside its folder: Corvane.app/../escaped"},
        {"another product", otherProduct, "the update is io.other.App, not io.test.App"},
        {"lower build inside", lowerBuild, "the update holds build 40, not the offered 57"},
        {"no agent inside", noAgent,
         std::string("the update holds no agent to start at ") + agentPath},
        {"archive not found", good, "the download failed", {}, {}, {.status = 404}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        delegate.events.clear();
        driver.shown.clear();
        offer(row.archive, row.signature.value_or(keys.sign(row.archive)), row.statedLength,
              row.served);
        auto updater = makeUpdater();
        ASSERT_EQ(updater->startUpdater(), std::nullopt);
        checkNow(*updater);
        EXPECT_TRUE(delegate.lastError.starts_with(row.error)) << delegate.lastError;
        ASSERT_FALSE(driver.shown.empty());
        EXPECT_EQ(driver.shown.back(), "error " + delegate.lastError);
        EXPECT_EQ(delegate.events.back(), "finished");
        EXPECT_EQ(installedBuild(), "50");
        EXPECT_EQ(besideHost(), (std::vector<std::string>{"Corvane.app", "cache"}));
        EXPECT_TRUE(fs::is_empty(folder / "cache"));
        EXPECT_TRUE(launches.empty());
        EXPECT_EQ(quits, 0);
        EXPECT_TRUE(updater->canCheckForUpdates());
    }
}

TEST_F(FeedUpdaterTest, ArchiveModuleThatCannotBeLoadedRefusesTheInstall) {
    const std::string good = buildArchive(productEntries("io.test.App", "2.1", "57"));
    struct Row {
        const char* name;
        fs::path module;
        std::string error;
    };
    const std::string prefix = "the update cannot be installed: its archive module ";
    const std::vector<Row> rows = {
        {"missing", folder / "lib/corvane-update-archive.so",
         prefix + (folder / "lib/corvane-update-archive.so").string() + " is missing"},
        {"of another version", CORVANE_FOREIGN_MODULE,
         prefix + CORVANE_FOREIGN_MODULE + " is version "},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        delegate.events.clear();
        driver.shown.clear();
        archiveModule = row.module;
        offer(good, keys.sign(good));
        auto updater = makeUpdater();
        // The key is checked at start without the module.
        ASSERT_EQ(updater->startUpdater(), std::nullopt);
        checkNow(*updater);
        EXPECT_TRUE(delegate.lastError.starts_with(row.error)) << delegate.lastError;
        EXPECT_EQ(driver.shown.back(), "error " + delegate.lastError);
        EXPECT_EQ(delegate.events,
                  (std::vector<std::string>{"found 2.1 (57)", "install", "download",
                                            "abort: " + delegate.lastError, "finished"}));
        EXPECT_EQ(installedBuild(), "50");
        EXPECT_EQ(besideHost(), (std::vector<std::string>{"Corvane.app", "cache"}));
        EXPECT_TRUE(fs::is_empty(folder / "cache"));
        EXPECT_TRUE(launches.empty());
        EXPECT_EQ(quits, 0);
        EXPECT_TRUE(updater->canCheckForUpdates());
    }
}

TEST_F(FeedUpdaterTest, FeedThatCannotBeUsedEndsTheCheckWithOneReason) {
    struct Row {
        const char* name;
        HttpResponse feed;
        std::string outcome;
    };
    const std::vector<Row> rows = {
        {"not XML", {.body = "<rss><channel><item>"}, "abort: the update feed is not valid XML"},
        {"not RSS", {.body = "<html><body/></html>"}, "abort: the update feed is not an RSS feed"},
        {"huge",
         {.body = feedOf(std::string(2 << 20, ' '))},
         "abort: the update feed is larger than 1 MiB"},
        {"missing", {.status = 404}, "abort: the update feed cannot be read"},
        {"nothing newer",
         {.body = feedOf(feedItem("2.0", "50", server.url("/a"), 1, "x") +
                         feedItem("1.9", "45", server.url("/b"), 1, "x"))},
         "none: no build newer than 50 in the feed"},
        {"redirected to plain http elsewhere",
         {.location = "http://updates.example/appcast.xml"},
         "abort: the update server redirected to http://updates.example/appcast.xml"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        delegate.events.clear();
        driver.shown.clear();
        server.answer("/appcast.xml", row.feed);
        auto updater = makeUpdater();
        ASSERT_EQ(updater->startUpdater(), std::nullopt);
        checkNow(*updater);
        ASSERT_EQ(delegate.events.size(), 2u);
        EXPECT_TRUE(delegate.events[0].starts_with(row.outcome)) << delegate.events[0];
        EXPECT_EQ(delegate.events[1], "finished");
        EXPECT_EQ(driver.shown.size(), 1u);
        EXPECT_EQ(installedBuild(), "50");
    }
    EXPECT_EQ(driver.shown.back().substr(0, 6), "error ");
}

TEST_F(FeedUpdaterTest, SkippedBuildStaysQuietOnScheduleButAnAskedCheckShowsIt) {
    const std::string archive = buildArchive(productEntries("io.test.App", "2.1", "57"));
    offer(archive, keys.sign(archive));
    driver.choice = UpdateUserChoice::skip;
    auto updater = makeUpdater();
    ASSERT_EQ(updater->startUpdater(), std::nullopt);
    checkNow(*updater);
    EXPECT_EQ(ownStore.string(FeedUpdater::skippedBuildKey), "57");
    EXPECT_GT(ownStore.number(FeedUpdater::lastCheckKey), 0);

    // Due again: the schedule looks at once when automatic checks are turned on.
    ownStore.set(FeedUpdater::lastCheckKey, 1.0);
    delegate.events.clear();
    updater->setAutomaticallyChecksForUpdates(true);
    runCycle();
    EXPECT_EQ(delegate.events,
              (std::vector<std::string>{"none: no build newer than 50 in the feed", "finished"}));

    // Not due: turning them on again checks nothing.
    const std::size_t requests = server.requests().size();
    updater->setAutomaticallyChecksForUpdates(true);
    QCoreApplication::processEvents();
    EXPECT_EQ(server.requests().size(), requests);

    delegate.events.clear();
    driver.choice = UpdateUserChoice::dismiss;
    checkNow(*updater);
    EXPECT_EQ(delegate.events, (std::vector<std::string>{"found 2.1 (57)", "dismiss", "finished"}));
    EXPECT_EQ(installedBuild(), "50");
}

// The settings window greys its button through this: it hears the state at once, every change
// after, nothing once its subscription ends, and may end it after the updater is gone.
TEST_F(FeedUpdaterTest, CanCheckObserversHearEachChangeUntilTheirSubscriptionEnds) {
    const std::string archive = buildArchive(productEntries("io.test.App", "2.1", "57"));
    offer(archive, keys.sign(archive));
    driver.choice = UpdateUserChoice::dismiss;
    auto updater = makeUpdater();
    std::vector<bool> heard;
    std::vector<bool> heardByEnded;
    Subscription kept =
        updater->observeCanCheckForUpdates([&heard](bool can) { heard.push_back(can); });
    Subscription ended = updater->observeCanCheckForUpdates(
        [&heardByEnded](bool can) { heardByEnded.push_back(can); });
    ASSERT_EQ(updater->startUpdater(), std::nullopt);
    ended.reset();
    checkNow(*updater);

    EXPECT_EQ(heard, (std::vector<bool>{false, true, false, true}));
    EXPECT_EQ(heardByEnded, (std::vector<bool>{false, true}));
    updater.reset();
    kept.reset();
    EXPECT_EQ(heard.size(), 4u);
}

TEST_F(FeedUpdaterTest, StartRefusesAHostItCannotUpdateSafely) {
    const std::string key = keys.publicBase64();
    struct Row {
        const char* name;
        std::string build;
        std::string extra;
        std::string error;
    };
    const std::vector<Row> rows = {
        {"plain http elsewhere", "50",
         R"(, "SUFeedURL": "http://updates.example/appcast.xml", "SUPublicEDKey": ")" + key + "\"",
         R"(SUFeedURL "http://updates.example/appcast.xml" is not an https address)"},
        {"no feed", "50", R"(, "SUPublicEDKey": ")" + key + "\"", R"(SUFeedURL "" is not)"},
        {"key of the wrong size", "50",
         R"(, "SUFeedURL": "https://updates.example/a.xml", "SUPublicEDKey": "AAAA")",
         "SUPublicEDKey is not a base64 Ed25519 public key"},
        {"no build number", "fifty",
         R"(, "SUFeedURL": "https://updates.example/a.xml", "SUPublicEDKey": ")" + key + "\"",
         "the bundle at " + host.string() + " has no build number"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        installBundle(host, "io.test.App", "2.0", row.build, row.extra);
        auto updater = makeUpdater();
        const std::optional<std::string> error = updater->startUpdater();
        ASSERT_TRUE(error);
        EXPECT_TRUE(error->starts_with(row.error)) << *error;
        EXPECT_FALSE(updater->canCheckForUpdates());
    }
}

TEST(UpdateFeed, OnlyHttpsOrLoopbackAddresses) {
    struct Row {
        const char* url;
        bool allowed;
    };
    const std::vector<Row> rows = {
        {"https://updates.example/appcast.xml", true},
        {"http://127.0.0.1:8080/appcast.xml", true},
        {"http://127.1.2.3/appcast.xml", true},
        {"http://[::1]:8080/appcast.xml", true},
        {"http://localhost/appcast.xml", true},
        {"http://updates.example/appcast.xml", false},
        {"http://192.168.1.2/appcast.xml", false},
        {"http://localhost.example/appcast.xml", false},
        {"ftp://updates.example/appcast.xml", false},
        {"file:///tmp/appcast.xml", false},
        {"https:///appcast.xml", false},
        {"", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        EXPECT_EQ(UpdateFeed::isAllowedURL(QUrl(QString::fromUtf8(row.url))), row.allowed);
    }
}

TEST(UpdateFeed, ItemsNeedABuildAndAnArchive) {
    const auto parsed = UpdateFeed::parse(QByteArray::fromStdString(feedOf(R"(
        <item><enclosure url="https://u/a.tar.xz" length="12" sparkle:version="60"
            sparkle:shortVersionString="3.0" sparkle:edSignature="c2ln"/></item>
        <item><sparkle:version>61</sparkle:version>
            <sparkle:releaseNotesLink> https://u/notes </sparkle:releaseNotesLink>
            <enclosure url="https://u/b.tar.xz" length="x"/></item>
        <item><sparkle:version>62</sparkle:version><title>no enclosure</title></item>
        <item><enclosure url="https://u/c.tar.xz" length="3"/></item>)")));
    const auto& items = std::get<std::vector<UpdateItem>>(parsed);
    ASSERT_EQ(items.size(), 2u);
    EXPECT_EQ(items[0], (UpdateItem{.displayVersionString = "3.0",
                                    .versionString = "60",
                                    .archiveURL = "https://u/a.tar.xz",
                                    .archiveLength = 12,
                                    .edSignature = "c2ln"}));
    EXPECT_EQ(items[1].displayVersionString, "61");
    EXPECT_EQ(items[1].releaseNotesLink, "https://u/notes");
    EXPECT_EQ(items[1].archiveLength, 0u);
}

}  // namespace
}  // namespace corvane
