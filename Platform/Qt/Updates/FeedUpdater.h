#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CorvaneShared/SettingsStore.h"
#include "Platform/ProcessLauncher.h"
#include "Platform/Qt/Updates/UpdateUserDriver.h"
#include "Platform/Updater.h"

namespace corvane {

/// Corvane's updater: reads the feed named by the host bundle's SUFeedURL with Qt Network,
/// offers the newest build above the installed one through the user driver, downloads it into
/// the cache, verifies its length and Ed25519 signature (SUPublicEDKey) before anything is
/// unpacked, unpacks it beside the host bundle, checks that it is the same product at the
/// offered build, swaps it in by renames, and relaunches the agent from it. Checks by itself
/// once a day while automatic checks are on. Create, use and destroy on the main thread inside
/// a QCoreApplication's lifetime; its work needs the event loop.
class FeedUpdater final : public Updater {
public:
    struct Services {
        UpdaterSetup setup;
        /// Outlives the updater.
        UpdateUserDriver& driver;
        /// The agent's own store: time of the last check, the skipped build.
        SettingsStore& ownStore;
        /// Where archives are downloaded to (created when missing).
        std::filesystem::path cacheDirectory;
        /// The archive module (ArchiveModule::pathIn of the agent's bundle): loaded to verify
        /// and unpack a downloaded update, unloaded when the cycle ends. When it is missing or
        /// of another version the install is refused, before anything is unpacked.
        std::filesystem::path archiveModule;
        ProcessLauncher launch;
        /// The agent's arguments after a relaunch.
        std::vector<std::string> relaunchArguments;
        /// Ends this process once the relaunched agent is on its way.
        std::function<void()> quit;
        /// How long after start the first scheduled check may come, and how often.
        std::chrono::milliseconds firstScheduledCheck = std::chrono::minutes(1);
        std::chrono::seconds checkInterval = std::chrono::hours(24);
        /// How long a transfer may go without data before it is given up.
        std::chrono::milliseconds transferTimeout = std::chrono::seconds(30);
    };

    /// Keys in the own store.
    static constexpr const char* lastCheckKey = "SULastCheckTime";
    static constexpr const char* skippedBuildKey = "SUSkippedVersion";

    explicit FeedUpdater(Services services);
    ~FeedUpdater() override;

    FeedUpdater(const FeedUpdater&) = delete;
    FeedUpdater& operator=(const FeedUpdater&) = delete;

    /// Fails when the host bundle has no readable info or build, no SUFeedURL that is https (or
    /// http to a loopback host), or no valid SUPublicEDKey.
    std::optional<std::string> startUpdater() override;
    bool canCheckForUpdates() const override;
    Subscription observeCanCheckForUpdates(std::function<void(bool)> observer) override;
    void checkForUpdates() override;
    bool automaticallyChecksForUpdates() const override;
    void setAutomaticallyChecksForUpdates(bool automatically) override;

private:
    class Session;
    std::unique_ptr<Session> session;
};

}  // namespace corvane
