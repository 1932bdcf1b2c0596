#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CorvaneShared/ProcessScan.h"
#include "CorvaneShared/SignalListener.h"
#include "Foundation/Subscription.h"
#include "Platform/ProcessLauncher.h"

namespace corvane {

class Log;
class MainQueue;
class SettingsStore;
class SignalBus;
class SystemMonitor;

/// One running copy of the agent as the single-instance rule compares it.
struct AgentInstance {
    std::int32_t pid = 0;
    /// Absent when the start time could not be read.
    std::optional<std::chrono::system_clock::time_point> launchDate;

    friend bool operator==(const AgentInstance&, const AgentInstance&) = default;
};

/// Whether the copy `me` must give way to another in `agents`: the earliest-started copy stays,
/// and among copies with equal or unknown start times the lowest pid. Never when `me` is not in
/// the list (this copy cannot see itself, so it cannot tell who came first).
bool shouldYieldToAnEarlierInstance(std::int32_t me, const std::vector<ProcessScan::Entry>& agents);

/// The menu bar as the agent holds it: its status items, meters and panels, for the life of the
/// process. Main thread.
class MenuBarSession {
public:
    virtual ~MenuBarSession() = default;
    /// Re-reads order, visibility and styles from the settings and rebuilds the items.
    virtual void applyMeterSettings() = 0;
};

/// Registers a callback for the defaults-change notification: it runs on the main thread after
/// the content of the shared settings changed (by the companion, a hand edit or the agent
/// itself), bursts of changes coalesced into one call, until the subscription ends.
using SettingsChangeObserver = std::function<Subscription(std::function<void()> onChange)>;

/// Builds the menu bar on the started monitor; it lives as long as the agent, the monitor
/// longer. `observeSettingsChanges` is valid for the menu bar's whole life.
using MenuBarFactory = std::function<std::unique_ptr<MenuBarSession>(
    SystemMonitor& monitor, const SettingsChangeObserver& observeSettingsChanges)>;

/// The started update controller as the agent holds it. Main thread.
class UpdatesSession {
public:
    virtual ~UpdatesSession() = default;
    /// True while an update is being downloaded or installed: no relaunch for anything else.
    virtual bool isBusy() const = 0;
};

/// The agent process: decides whether it may run, then creates the monitor, the menu bar and
/// the updates, and reacts to the `quitAgent` and `settings` signals. Owns all of them until it
/// is destroyed. Main thread only.
class AgentDelegate {
public:
    struct Services {
        /// The shared settings; outlives the delegate.
        SettingsStore& settings;
        /// Outlives the delegate.
        SignalBus& bus;
        /// The suite whose signals are heard.
        std::string suite;
        /// Category "lifecycle"; outlives the delegate.
        Log& log;
        /// Where a burst of `settings` signals is answered once; outlives the delegate.
        MainQueue& mainQueue;
        std::int32_t processId = 0;
        /// A unit-test host runs no single-instance check and no master switch, creates no
        /// monitor, menu bar or updates, and only listens for `quitAgent`.
        bool isUnitTestHost = false;
        std::function<bool()> shouldYieldToAnEarlierInstance;
        /// The started monitor.
        std::function<std::shared_ptr<SystemMonitor>()> makeMonitor;
        /// Absent: the agent runs without a menu bar.
        MenuBarFactory makeMenuBar;
        /// Creates and starts the update controller; absent: no updates.
        std::function<std::unique_ptr<UpdatesSession>()> startUpdates;
        /// Absent: settings changes are known only from the `settings` signal.
        SettingsChangeObserver observeSettingsChanges;
        /// Whether the interface language is no longer the one this process started with.
        std::function<bool()> languageIsStale;
        /// Puts the chosen language into this process's environment before a relaunch.
        std::function<void()> applyLanguageChoice;
        ProcessLauncher launch;
        /// What a relaunch starts again.
        std::string executable;
        std::vector<std::string> arguments;
        /// Asks the application to end its event loop.
        std::function<void()> terminate;
    };

    /// How the launch ended.
    enum class Launch { running, unitTestHost, yielded, switchedOff };

    explicit AgentDelegate(Services services);
    ~AgentDelegate();

    AgentDelegate(const AgentDelegate&) = delete;
    AgentDelegate& operator=(const AgentDelegate&) = delete;

    /// Every start-up step, in order; asks to terminate when this copy may not run.
    Launch applicationDidFinishLaunching();
    /// Closing a panel never quits the agent.
    static bool applicationShouldTerminateAfterLastWindowClosed() { return false; }
    /// Starts the agent again once this process has ended, then asks to terminate. A failed
    /// start is ignored: the agent terminates anyway.
    void relaunch();

    /// Absent before the launch and in a unit-test host.
    SystemMonitor* monitor() const { return systemMonitor.get(); }
    MenuBarSession* statusBarController() const { return menuBar.get(); }

private:
    void settingsSignalArrived();
    void answerSettingsSignal();
    void terminate();

    Services services;
    // Torn down from the bottom: no signal arrives once teardown starts, and the menu bar goes
    // before the monitor it observes.
    std::shared_ptr<SystemMonitor> systemMonitor;
    Subscription intervalUpdates;
    std::unique_ptr<MenuBarSession> menuBar;
    std::unique_ptr<UpdatesSession> updates;
    bool settingsAnswerQueued = false;
    bool terminating = false;
    std::shared_ptr<AgentDelegate*> self = std::make_shared<AgentDelegate*>(this);
    SignalListener signalListener;
};

}  // namespace corvane
