#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "CorvaneAgent/PanelMetrics.h"
#include "CorvaneAgent/UI/PanelSource.h"
#include "CorvaneShared/MonitorSection.h"
#include "CorvaneShared/UI/MonitorPopover.h"

class QWidget;

namespace corvane {

class SystemMonitor;

/// What the footer of a panel does; each may be empty.
struct PanelActions {
    /// Closes the section's popover.
    std::function<void()> close;
    /// Opens the companion's settings (called after `close`).
    std::function<void()> openSettings;
    /// Ends the agent.
    std::function<void()> quit;
};

/// What every panel is built with besides the model and its fit.
struct PanelEnvironment {
    /// The shared settings ("popoverAppearance", "popoverBackground", "temperatureUnit"), the
    /// interface language and the user's locale.
    UnitSources units;
    PlatformProfile profile = PlatformProfile::linuxDesktop();
    /// Absent: every process shows the "terminal" symbol.
    ProcessIconLookup processIcon = nullptr;
    /// The desktop's preference (DesktopColorScheme::prefersDark); absent reads as dark.
    std::function<bool()> desktopPrefersDark = nullptr;
    /// Whether translucent windows are blended (desktopCompositorRunning); absent reads as no.
    std::function<bool()> compositorRunning = nullptr;
    /// Replaces the stored "popoverAppearance" (pictures drawn in a given scheme); absent in
    /// the agent.
    std::optional<std::string> appearance = std::nullopt;
};

/// The detail panel of `section` in its frame (`MonitorPopover`): 300 points wide, laid out
/// with `metrics`, the section's content scrolling in `scrollHeight` points when given. It
/// follows the model's changes while it lives; `applyAppearance()` on it re-reads the
/// appearance settings. `heightForWidth(300)` is its natural height. Main thread only.
MonitorPopover* makePanel(MonitorSection section, std::shared_ptr<SystemMonitor> monitor,
                          const PanelMetrics& metrics, std::optional<double> scrollHeight,
                          const PanelActions& actions, const PanelEnvironment& environment,
                          QWidget* parent = nullptr);

/// The same over any panel source (tests, benchmarks).
MonitorPopover* makePanel(MonitorSection section, std::unique_ptr<PanelSource> source,
                          const PanelMetrics& metrics, std::optional<double> scrollHeight,
                          const PanelActions& actions, const PanelEnvironment& environment,
                          QWidget* parent = nullptr);

}  // namespace corvane
