#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CorvaneAgent/MeterViews.h"
#include "CorvaneAgent/PanelMetrics.h"
#include "CorvaneAgent/Popover.h"
#include "CorvaneShared/MonitorSection.h"
#include "CorvaneShared/SettingsStore.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneShared/TextLookup.h"
#include "Foundation/Subscription.h"
#include "Platform/MenuBarHost.h"
#include "Platform/Runtime.h"
#include "Platform/SignalBus.h"

namespace corvane {

class SystemMonitor;

/// What the status bar controller works with. Everything referenced outlives the controller.
struct StatusBarServices {
    /// The model; kept alive by the controller.
    std::shared_ptr<SystemMonitor> monitor;
    MenuBarHost& host;
    MeterViews& meters;
    /// Called once per section, at construction; never answers null.
    PopoverFactory makePopover;
    /// The shared suite: "menuBarOrder", the show…Item keys.
    SettingsStore& shared;
    /// The agent's own store: "Corvane.itemGeneration" and the items' position and visibility
    /// records.
    SettingsStore& own;
    /// Where `menuBarChanged` is posted after the user reordered the items.
    SignalBus& bus;
    std::string suite = SharedSettings::suiteName();
    /// Main queue for deferred work, timers for the order settle.
    Runtime runtime;
    /// Registers a callback for every change of the shared suite (any thread); the controller
    /// keeps the subscription.
    std::function<Subscription(std::function<void()>)> observeSettingsChanges;
    /// Translates the items' accessibility titles.
    TextLookup translate;
    /// The process environment (for "CORVANE_PANEL_BUDGET").
    SharedSettings::EnvironmentLookup environment;
};

/// Owns the menu-bar side of the agent: one item per shown section in the stored order, each
/// drawing its meter, one detail popover per section opened and closed by clicks, and the
/// observers that follow settings, screens, workspaces and the user dragging the items. Main
/// thread only; every callback it registers holds it weakly.
class StatusBarController final : public std::enable_shared_from_this<StatusBarController> {
    struct Passkey {};

public:
    /// Builds the controller: the popovers, the items for the stored order and every observer.
    static std::shared_ptr<StatusBarController> create(StatusBarServices services);
    StatusBarController(Passkey, StatusBarServices services);
    ~StatusBarController();

    StatusBarController(const StatusBarController&) = delete;
    StatusBarController& operator=(const StatusBarController&) = delete;

    /// Re-reads order and visibility (rebuilding the items when they changed), then each item's
    /// width, and redraws every meter and an open panel's appearance.
    void applyMeterSettings();
    /// Opens the section's popover, or closes it when it is open or opening.
    void toggle(MonitorSection section);
    /// Closes every popover and cancels an opening in progress.
    void closePopovers();

    /// The sections whose items are installed, left to right, as last installed or dragged.
    const std::vector<MonitorSection>& appliedOrder() const { return applied; }

private:
    /// One installed item; `hasMeter` is false for an item that came without a button.
    struct InstalledItem {
        std::unique_ptr<MenuBarItem> item;
        bool hasMeter = false;
    };

    void start();
    void observeHost();

    std::vector<MonitorSection> desiredOrder() const;
    void syncStatusItems();
    void rebuildStatusItems(const std::vector<MonitorSection>& order);
    void installStatusItems(const std::vector<MonitorSection>& order);
    void installStatusItem(MonitorSection section, std::int64_t generation);
    std::int64_t nextGeneration();
    void removeStatusItems();

    void redrawChangedMeters();
    void statusItemClicked(const MenuBarItem& sender);
    void finishOpening(MonitorSection section, std::int64_t opening);
    std::int64_t advanceOpenGeneration();
    void popoverDidClose(MonitorSection section);
    void closePopoversIfOutside(ScreenPoint point);
    std::vector<ScreenRect> statusButtonScreenRects() const;
    bool isStatusItem(const MenuBarItem& item) const;
    void noteItemsMoved();
    void settleOrder();
    std::optional<std::vector<MonitorSection>> visualOrder() const;
    void reanchorOpenPopover();

    void loadContent(Popover& content, MonitorSection section);
    double availableHeight(MonitorSection section) const;
    /// The item of `section` when it is installed and has a button.
    MenuBarItem* buttonItem(MonitorSection section) const;
    Popover& popover(MonitorSection section) const;

    StatusBarServices services;
    std::map<MonitorSection, InstalledItem> statusItems;
    std::array<std::unique_ptr<Popover>, allMonitorSections.size()> popovers;
    std::map<MonitorSection, std::string> drawSignatures;
    std::vector<MonitorSection> applied;
    bool rebuildingItems = false;
    /// A one-shot: the timer is dropped when it first fires.
    std::unique_ptr<Timer> orderSettle;
    PanelFit panelFit;
    std::optional<MonitorSection> pendingSection;
    std::int64_t openGeneration = 0;

    // Last, so that they end before anything their callbacks touch is destroyed.
    Subscription clickMonitor;
    Subscription defaultsObserver;
    std::vector<Subscription> layoutObservers;
};

}  // namespace corvane
