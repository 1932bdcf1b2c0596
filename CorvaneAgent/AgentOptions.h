#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "CorvaneAgent/MenuBarHostChoice.h"
#include "CorvaneAgent/SamplingPlan.h"
#include "CorvaneShared/MonitorSection.h"

namespace corvane {

/// How many refreshes a snapshot takes when not told: enough for two process scans, since the
/// first scan has nothing to compare with and shows every CPU share and disk rate as 0.
inline constexpr int defaultSnapshotRefreshes = processAndSensorEvery + 1;

/// What `corvane-agent` was asked to do on its command line.
struct AgentOptions {
    enum class Mode {
        /// The menu-bar agent.
        menuBar,
        /// Sample, print one JSON object, exit.
        snapshot,
        /// Print one JSON line per refresh until interrupted (or until `refreshes`).
        stream,
        /// Sample as a snapshot does, then draw the meters into `renderDirectory`.
        render,
        /// Print the usage text and exit.
        help,
        /// Check the bundle's update feed once, print the outcome as one JSON line, exit.
        updateCheck,
        /// The same, and install what was found without asking.
        updateInstall,
    };

    Mode mode = Mode::menuBar;
    /// How many refreshes a snapshot takes (`defaultSnapshotRefreshes` when not given); a
    /// stream's limit when given.
    std::optional<int> refreshes;
    /// Seconds between refreshes; absent means the configured interval.
    std::optional<double> interval;
    /// Panels to mark open before the first refresh, in the order given.
    std::vector<MonitorSection> openSections;
    std::filesystem::path procfs = "/proc";
    std::filesystem::path sysfs = "/sys";
    /// A recorded controller table to use as the machine's sensors.
    std::optional<std::filesystem::path> smcTable;
    /// Where `render` writes its images and layout.json.
    std::filesystem::path renderDirectory;
    /// Which menu bar the agent shows its meters in.
    MenuBarHostRequest menuBarHost = MenuBarHostRequest::automatic;
};

/// Why the command line was refused, in one line without the program name.
struct ArgumentError {
    std::string message;
};

/// Parses the arguments after the program name. `--name value` and `--name=value` both work.
std::variant<AgentOptions, ArgumentError> parseAgentArguments(
    std::span<const std::string_view> arguments);

/// Whether a copy of the agent started with `arguments` (after the program name) runs the menu
/// bar: a headless or one-off copy (--stream, --render, --update-check, ...) does not, nor one
/// whose arguments are refused, since it has already left.
bool runsTheMenuBar(const std::vector<std::string>& arguments);

/// The text `--help` prints.
std::string agentUsage();

}  // namespace corvane
