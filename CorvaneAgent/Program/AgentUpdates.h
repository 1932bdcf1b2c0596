#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/UpdateController.h"

namespace corvane {

class SignalBus;
class UpdateUserDriver;

/// The agent's update controller with everything it runs on: the journal (category
/// "updates"), the shared and the agent's own settings, the companion's processes, and Corvane's
/// feed updater talking to the user through `driver`. Create it once after launch on the main
/// thread, inside a running QCoreApplication (QApplication for the dialogs), call
/// `controller().start()`, and keep it for the life of the process; read
/// `controller().isBusy()` before relaunching for any other reason.
class AgentUpdates {
public:
    struct Options {
        /// The bundle the agent runs from (BundleDirectory::bundleOfExecutable); absent outside
        /// one.
        std::optional<std::filesystem::path> agentBundle;
        /// Outlives this object.
        SignalBus& bus;
        /// Outlives this object.
        UpdateUserDriver& driver;
        /// The new agent's arguments after an install (none: the menu-bar agent).
        std::vector<std::string> relaunchArguments;
        /// Ends this process after an install handed over to the new agent.
        std::function<void()> quit;
        /// Also sees every log line (optional).
        std::function<void(LogLevel, std::string_view)> onLog;
    };

    explicit AgentUpdates(Options options);
    ~AgentUpdates();

    AgentUpdates(const AgentUpdates&) = delete;
    AgentUpdates& operator=(const AgentUpdates&) = delete;

    UpdateController& controller() { return *updateController; }

private:
    class Services;
    std::unique_ptr<Services> services;
    std::unique_ptr<UpdateController> updateController;
};

}  // namespace corvane
