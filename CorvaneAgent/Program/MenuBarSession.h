#pragma once

#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "CorvaneAgent/MenuBarHostChoice.h"
#include "Foundation/Subscription.h"
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
struct MenuBarSessionServices {
    std::shared_ptr<SystemMonitor> monitor;
    SettingsStore& shared;
    SettingsStore& own;
    SignalBus& bus;
    Runtime runtime;
    /// Every change of the shared settings, whoever made it.
    std::function<Subscription(std::function<void()>)> observeSettingsChanges;
    const AppLanguage& language;
    MenuBarHostRequest request = MenuBarHostRequest::automatic;
    std::function<void()> openSettings;
    std::function<void()> quit;
};

/// The agent's menu bar: the host the session offers (tray or strip), the meters drawn into
/// its items, and the status bar controller with one panel window per section. Needs a
/// QApplication; main thread only.
class MenuBarSession {
public:
    /// The running menu bar, or one line saying why there can be none.
    static std::variant<std::unique_ptr<MenuBarSession>, std::string> start(
        MenuBarSessionServices services);
    ~MenuBarSession();

    /// Brings the items and an open panel up to date with the settings in force.
    void applyMeterSettings();

private:
    MenuBarSession() = default;

    // Destroyed in reverse: the controller takes its items off the host before the meters
    // they draw and the host itself go.
    std::unique_ptr<MenuBarHost> host;
    std::unique_ptr<DrawnMeterViews> meters;
    std::shared_ptr<StatusBarController> controller;
};

}  // namespace corvane
