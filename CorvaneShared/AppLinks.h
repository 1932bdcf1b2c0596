#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "CorvaneShared/SharedSettings.h"
#include "Platform/ProcessLauncher.h"

namespace corvane {

/// Opening the companion application from the agent: where it is, what it inherits, and the
/// request for its settings window. Main thread only.
class AppLinks {
public:
    struct Sources {
        /// The agent's environment.
        SharedSettings::EnvironmentLookup environment;
        /// The bundle the agent runs from; absent when it runs outside one.
        std::optional<std::filesystem::path> agentBundle;
        /// The companion application's bundle identifier.
        std::string appBundleIdentifier;
        /// Posts a signal in the shared suite.
        std::function<void(SharedSettings::Signal)> post;
        ProcessLauncher launch;
    };

    /// Marks a process started by a unit-test runner.
    static constexpr const char* unitTestVariable = "XCTestConfigurationFilePath";
    /// The companion's program, found beside the agent when no bundle or desktop entry is.
    static constexpr const char* companionProgram = "corvane-settings";

    explicit AppLinks(Sources sources);

    /// Posts `openSettings`, so that a running companion shows its settings, then starts the
    /// companion found by `containingAppURL` with `testEnvironment` on top of the agent's own
    /// environment. A companion that is not found or does not start leaves the signal alone;
    /// nothing is reported.
    void openSettingsApp() const;

    /// The companion: the `.app` bundle four folders above the agent's bundle when its bundle
    /// identifier is the companion's (the portable layout
    /// `Corvane.app/Contents/Library/LoginItems/CorvaneAgent.app`), else the XDG desktop entry
    /// named after that identifier, else the companion program built or installed with the
    /// agent (`corvane-settings` at the top of the agent's bundle, as in the build tree, or in
    /// its `bin/`); absent when none exists.
    std::optional<std::filesystem::path> containingAppURL() const;

    /// The variables that choose settings, tests and the language, copied from the agent's
    /// environment when it has them: CORVANE_SETTINGS_SUITE, CORVANE_UI_TESTING,
    /// CORVANE_DISABLE_UPDATER, CORVANE_NO_LOGIN_ITEM, CORVANE_LANGUAGE.
    std::map<std::string, std::string> testEnvironment() const;

    /// Whether the environment had XCTestConfigurationFilePath when this object was made.
    bool isUnitTestHost() const { return unitTestHost; }

private:
    std::optional<DetachedLaunch> launchOf(const std::filesystem::path& app) const;

    Sources sources;
    bool unitTestHost;
};

/// The sources of this process: its environment, the bundle it runs from, the companion's
/// identifier from the build, and the given signal poster and launcher.
AppLinks::Sources processLinkSources(std::optional<std::filesystem::path> agentBundle,
                                     std::function<void(SharedSettings::Signal)> post,
                                     ProcessLauncher launch);

}  // namespace corvane
