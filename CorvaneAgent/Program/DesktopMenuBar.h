#pragma once

#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "CorvaneAgent/AgentDelegate.h"
#include "CorvaneAgent/MenuBarHostChoice.h"
#include "CorvaneAgent/UI/MenuBarViews.h"
#include "CorvaneAgent/UI/ProcessIcon.h"
#include "Foundation/Subscription.h"
#include "Platform/Qt/DesktopColorScheme.h"
#include "Platform/Runtime.h"

namespace corvane {

class AppLanguage;
class DrawnMeterViews;
class MenuBarHost;
class SettingsStore;
class SignalBus;
class StatusBarController;
class SystemMonitor;

/// What the menu bar is made from: the model, the stores, the bus and the desktop's commands.
struct DesktopMenuBarServices {
    /// The started model.
    std::shared_ptr<SystemMonitor> monitor;
    SettingsStore& shared;
    /// The agent's own store: the items' generation, positions and visibility.
    SettingsStore& own;
    SignalBus& bus;
    Runtime runtime;
    /// Every change of the shared settings, whoever made it.
    std::function<Subscription(std::function<void()>)> observeSettingsChanges;
    const AppLanguage& language;
    MenuBarHostRequest request = MenuBarHostRequest::automatic;
    /// "Settings" in a panel's footer and in an item's menu.
    std::function<void()> openSettings;
    /// "Quit" in a panel's footer and in an item's menu.
    std::function<void()> quit;
};

/// The agent's menu bar: the host the session offers (the tray, or Corvane's own strip), the
/// meters drawn into its items, and the status bar controller with a panel window per section.
/// Meters and panels follow the desktop's light or dark preference. Needs a QApplication; main
/// thread only; everything in `services` outlives it.
class DesktopMenuBar final : public MenuBarSession {
public:
    /// The running menu bar, or one line saying why the session offers none.
    static std::variant<std::unique_ptr<DesktopMenuBar>, std::string> start(
        DesktopMenuBarServices services);
    ~DesktopMenuBar() override;

    DesktopMenuBar(const DesktopMenuBar&) = delete;
    DesktopMenuBar& operator=(const DesktopMenuBar&) = delete;

    /// Brings the items and an open panel up to date with the settings in force.
    void applyMeterSettings() override;

private:
    explicit DesktopMenuBar(UnitSources units);

    // Declared first, destroyed last: the controller, the meters and the panels read these.
    DesktopColorScheme colorScheme;
    ProcessIcon processIcons;
    PanelEnvironment panelEnvironment;
    // The controller takes its items off the host before the meters they draw and the host
    // itself go.
    std::unique_ptr<MenuBarHost> host;
    std::unique_ptr<DrawnMeterViews> meters;
    std::shared_ptr<StatusBarController> controller;
};

}  // namespace corvane
