#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CorvaneShared/SettingsStore.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneShared/SignalListener.h"
#include "Foundation/Subscription.h"
#include "Platform/Log.h"
#include "Platform/RunningApplications.h"
#include "Platform/Runtime.h"
#include "Platform/Updater.h"

namespace corvane {

/// Drives software updates of the whole product from the agent embedded in it: starts the
/// updater on the outer bundle, keeps automatic checks in step with the shared settings,
/// answers the companion's request to check, and publishes an available update as
/// "updatesAvailable" (with the `updateAvailable` signal) so the companion can show it.
/// Everything runs on the main thread; the owner keeps it for the life of the process.
class UpdateController final : public UpdaterDelegate {
public:
    struct Services {
        /// The shared settings store.
        SettingsStore& settings;
        /// Where the `checkForUpdates` and `settings` signals arrive and `updateAvailable` goes.
        SignalBus& bus;
        std::string suite = SharedSettings::suiteName();
        /// Bound to the category "updates".
        Log& log;
        /// The process environment.
        SharedSettings::EnvironmentLookup environment;
        /// The bundle the agent runs from; absent when it runs outside one.
        std::optional<std::filesystem::path> agentBundle;
        UpdaterFactory makeUpdater;
        /// Brings the agent's windows in front of other applications (optional).
        std::function<void()> bringToFront;
        /// The companion's processes, ended before its bundle is replaced.
        RunningApplications& applications;
        const Clock& clock;
        /// Handles pending events for at most the given seconds, so that the processes asked
        /// to end can be answered while the agent waits for them.
        std::function<void(double seconds)> runEventsFor;
    };

    /// The log lines of the two ways updates stay off.
    static constexpr const char* notEmbeddedMessage =
        "updates off: this agent is not embedded in Corvane.app";
    static constexpr const char* disabledMessage =
        "updates off: no SUPublicEDKey, or disabled for this run";

    /// How long the companion gets to end by itself before it is killed, in seconds.
    static constexpr double terminationGraceSeconds = 4.0;
    /// How long each wait for it handles events, in seconds.
    static constexpr double terminationPollSeconds = 0.1;

    explicit UpdateController(Services services);
    ~UpdateController() override;

    UpdateController(const UpdateController&) = delete;
    UpdateController& operator=(const UpdateController&) = delete;

    /// The main bundle that embeds the agent bundle at `bundleURL`: its fourth ancestor when
    /// that ends in ".app", else absent. Looks at the path only.
    static std::optional<std::filesystem::path> hostBundleURL(
        const std::filesystem::path& bundleURL);

    /// Starts updates once after launch: finds the host bundle, applies the policy, creates and
    /// starts the updater, listens for the signals and publishes what it knows. Stays off for
    /// the rest of the process when the agent is not embedded, updates are disabled, or the
    /// updater does not start. Later calls do nothing.
    void start();

    /// True from the start of a download until the update cycle finishes: a relaunch now
    /// would cut the install short.
    bool isBusy() const { return busy; }
    /// Whether start() left an updater running.
    bool hasUpdater() const { return updater != nullptr; }

    /// What the `checkForUpdates` signal does: brings the agent forward and checks now, when
    /// an updater runs and can check; false (and nothing happens) otherwise.
    bool checkForUpdatesNow();

    void didFindValidUpdate(const UpdateItem& item) override;
    void updaterDidNotFindUpdate(const std::string& reason) override;
    void didAbortWithError(const std::string& description) override;
    void userDidMake(UpdateUserChoice choice) override;
    void willDownloadUpdate() override;
    void didFinishUpdateCycle() override;
    bool updaterShouldRelaunchApplication() override;
    void willInstallUpdate() override;

private:
    void publish(const std::optional<std::string>& offer);
    void retireSpentOffer();
    void synchronizeAutomaticChecks();
    std::string runningVersion() const;

    Services services;
    bool started = false;
    bool busy = false;
    std::optional<std::filesystem::path> hostBundle;
    std::unique_ptr<Updater> updater;
    // Not named `signals`: Qt defines that word as a macro in the files that include this one.
    std::optional<SignalListener> signalListener;
    std::vector<Subscription> observations;
};

}  // namespace corvane
