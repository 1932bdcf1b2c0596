#include "CorvaneAgent/StatusBarController.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <utility>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/MeterSettings.h"
#include "CorvaneShared/SignalListener.h"

namespace corvane {

namespace {

constexpr const char* generationKey = "Corvane.itemGeneration";
constexpr const char* positionPrefix = "NSStatusItem Preferred Position ";
constexpr const char* visibilityPrefix = "NSStatusItem Visible ";

// The first item of the order gets the largest position: the host places larger ones further
// left, so the items read left to right in the stored order.
constexpr double basePosition = 4000;
constexpr double positionStep = 100;

// How long the items must stay put after a user move before their order is read back.
constexpr double orderSettleSeconds = 0.3;

// Generations are counted in a double-typed store; beyond 2^53 they would no longer count.
constexpr double largestExactGeneration = 9007199254740992.0;

std::string autosaveName(MonitorSection section, std::int64_t generation) {
    return "Corvane." + std::string(sectionKey(section)) + "." + std::to_string(generation);
}

}  // namespace

std::shared_ptr<StatusBarController> StatusBarController::create(StatusBarServices services) {
    auto controller = std::make_shared<StatusBarController>(Passkey{}, std::move(services));
    // The callbacks hold the controller weakly, which needs it owned first.
    controller->start();
    return controller;
}

StatusBarController::StatusBarController(Passkey, StatusBarServices controllerServices)
    : services(std::move(controllerServices)) {}

StatusBarController::~StatusBarController() {
    clickMonitor.reset();
    defaultsObserver.reset();
    layoutObservers.clear();
    orderSettle.reset();
    // The monitor's refresh hook holds the controller weakly and does nothing from now on; it is
    // left in place because the controller may be going away from inside that very call.
    removeStatusItems();
}

void StatusBarController::start() {
    const std::weak_ptr<StatusBarController> weakSelf = weak_from_this();
    for (MonitorSection section : allMonitorSections) {
        popovers[static_cast<std::size_t>(section)] =
            services.makePopover(section, [weakSelf, section] {
                if (auto self = weakSelf.lock()) {
                    self->popover(section).close();
                }
            });
    }
    syncStatusItems();
    for (MonitorSection section : allMonitorSections) {
        layoutObservers.push_back(popover(section).observeDidClose([weakSelf, section] {
            if (auto self = weakSelf.lock()) {
                self->popoverDidClose(section);
            }
        }));
    }
    services.monitor->setOnRefresh([weakSelf] {
        if (auto self = weakSelf.lock()) {
            self->redrawChangedMeters();
        }
    });
    clickMonitor =
        services.host.observePointerPresses([weakSelf](ScreenPoint location, bool onItem) {
            // A press on an item is that item's own click: its action toggles.
            if (onItem) {
                return;
            }
            if (auto self = weakSelf.lock()) {
                self->closePopoversIfOutside(location);
            }
        });
    if (services.observeSettingsChanges) {
        // The notification may come from a watcher thread; the items are touched on the main one.
        defaultsObserver =
            services.observeSettingsChanges([weakSelf, &queue = services.runtime.mainQueue] {
                queue.post([weakSelf] {
                    if (auto self = weakSelf.lock()) {
                        self->applyMeterSettings();
                    }
                });
            });
    }
    observeHost();
}

void StatusBarController::observeHost() {
    const std::weak_ptr<StatusBarController> weakSelf = weak_from_this();
    layoutObservers.push_back(services.host.observeItemMoved([weakSelf](MenuBarItem& item) {
        auto self = weakSelf.lock();
        if (!self || !self->isStatusItem(item)) {
            return;
        }
        self->noteItemsMoved();
        self->reanchorOpenPopover();
    }));
    const auto reanchor = [weakSelf] {
        if (auto self = weakSelf.lock()) {
            self->reanchorOpenPopover();
        }
    };
    layoutObservers.push_back(services.host.observeScreensChanged(reanchor));
    layoutObservers.push_back(services.host.observeWorkspaceChanged(reanchor));
}

std::vector<MonitorSection> StatusBarController::desiredOrder() const {
    std::vector<MonitorSection> order = MeterSettings::menuBarOrder(services.shared);
    std::erase_if(order, [this](MonitorSection section) {
        return !MeterSettings::showsItem(services.shared, section);
    });
    return order;
}

void StatusBarController::syncStatusItems() {
    std::vector<MonitorSection> order = desiredOrder();
    if (order == applied) {
        return;
    }
    if (statusItems.empty()) {
        installStatusItems(order);
    } else {
        rebuildStatusItems(order);
    }
    applied = std::move(order);
}

void StatusBarController::rebuildStatusItems(const std::vector<MonitorSection>& order) {
    rebuildingItems = true;
    closePopovers();
    removeStatusItems();
    drawSignatures.clear();
    installStatusItems(order);
    // The host reports the moves the rebuild itself causes during this turn; they are not the
    // user's, so the flag outlives it by one turn of the main queue.
    services.runtime.mainQueue.post([weakSelf = weak_from_this()] {
        if (auto self = weakSelf.lock()) {
            self->rebuildingItems = false;
        }
    });
}

void StatusBarController::installStatusItems(const std::vector<MonitorSection>& order) {
    const std::int64_t generation = nextGeneration();
    const std::size_t count = order.size();
    for (std::size_t k = 0; k < count; ++k) {
        const double position = basePosition + positionStep * static_cast<double>(count - 1 - k);
        services.own.set(positionPrefix + autosaveName(order[k], generation), position);
    }
    for (auto section = order.rbegin(); section != order.rend(); ++section) {
        installStatusItem(*section, generation);
    }
}

void StatusBarController::installStatusItem(MonitorSection section, std::int64_t generation) {
    std::unique_ptr<MenuBarItem> added = services.host.addItem(services.meters.itemWidth(section),
                                                               autosaveName(section, generation));
    if (!added) {
        return;
    }
    MenuBarItem& item = *added;
    InstalledItem installed{std::move(added), false};
    if (item.hasButton()) {
        item.setAction([weakSelf = weak_from_this(), &item] {
            if (auto self = weakSelf.lock()) {
                self->statusItemClicked(item);
            }
        });
        const std::string_view title = panelTitle(section);
        item.setAccessibilityLabel(services.translate ? services.translate(title)
                                                      : std::string(title));
        item.setToolTip(services.meters.readout(section));
        item.setDrawing(
            [&meters = services.meters, section](double devicePixelRatio, double height) {
                return meters.draw(section, devicePixelRatio, height);
            });
        installed.hasMeter = true;
    }
    statusItems[section] = std::move(installed);
}

std::int64_t StatusBarController::nextGeneration() {
    const double stored = services.own.number(generationKey);
    // A value no generation can have (a fraction, out of range) counts as none.
    const bool usable = stored >= -largestExactGeneration && stored < largestExactGeneration &&
                        stored == static_cast<double>(static_cast<std::int64_t>(stored));
    const std::int64_t previous = usable ? static_cast<std::int64_t>(stored) : 0;
    // Each install gets fresh names, so the host can restore no stale position or hidden state
    // from an earlier layout.
    for (MonitorSection section : allMonitorSections) {
        const std::string name = autosaveName(section, previous);
        services.own.remove(positionPrefix + name);
        services.own.remove(visibilityPrefix + name);
    }
    services.own.set(generationKey, previous + 1);
    return previous + 1;
}

void StatusBarController::removeStatusItems() {
    for (auto& [section, installed] : statusItems) {
        services.host.removeItem(*installed.item);
    }
    statusItems.clear();
}

void StatusBarController::applyMeterSettings() {
    syncStatusItems();
    for (auto& [section, installed] : statusItems) {
        installed.item->setLength(services.meters.itemWidth(section));
        if (installed.hasMeter) {
            installed.item->setNeedsDisplay();
        }
    }
    for (const auto& shown : popovers) {
        if (shown->isShown()) {
            shown->refreshAppearance();
        }
    }
}

void StatusBarController::redrawChangedMeters() {
    for (auto& [section, installed] : statusItems) {
        if (!installed.hasMeter) {
            continue;
        }
        std::string signature = services.meters.drawSignature(section);
        const auto stored = drawSignatures.find(section);
        if (stored != drawSignatures.end() && stored->second == signature) {
            continue;
        }
        drawSignatures[section] = std::move(signature);
        installed.item->setToolTip(services.meters.readout(section));
        installed.item->setNeedsDisplay();
    }
}

void StatusBarController::statusItemClicked(const MenuBarItem& sender) {
    for (const auto& [section, installed] : statusItems) {
        if (installed.item.get() == &sender) {
            toggle(section);
            return;
        }
    }
}

void StatusBarController::toggle(MonitorSection section) {
    if (popover(section).isShown() || pendingSection == section) {
        closePopovers();
        return;
    }
    closePopovers();
    if (!buttonItem(section)) {
        return;
    }
    loadContent(popover(section), section);
    pendingSection = section;
    const std::int64_t opening = advanceOpenGeneration();
    services.runtime.mainQueue.post([weakSelf = weak_from_this(), section, opening] {
        auto self = weakSelf.lock();
        // Closed before it began: nothing to prepare for.
        if (!self || self->openGeneration != opening) {
            return;
        }
        self->services.monitor->prepareDetailedSampling(section, [weakSelf, section, opening] {
            if (auto live = weakSelf.lock()) {
                live->finishOpening(section, opening);
            }
        });
    });
}

void StatusBarController::finishOpening(MonitorSection section, std::int64_t opening) {
    // Another click or a close-all came first; it has dealt with this popover.
    if (openGeneration != opening) {
        return;
    }
    pendingSection.reset();
    MenuBarItem* item = buttonItem(section);
    const std::optional<ScreenRect> anchor = item ? item->windowFrame() : std::nullopt;
    if (!anchor) {
        popover(section).removeContent();
        services.monitor->endDetailedSampling(section);
        return;
    }
    popover(section).show(*anchor);
}

std::int64_t StatusBarController::advanceOpenGeneration() {
    if (openGeneration == std::numeric_limits<std::int64_t>::max()) {
        std::fputs("corvane-agent: popover opening counter overflowed\n", stderr);
        std::abort();
    }
    return ++openGeneration;
}

void StatusBarController::closePopovers() {
    advanceOpenGeneration();
    if (pendingSection) {
        const MonitorSection pending = *std::exchange(pendingSection, std::nullopt);
        popover(pending).removeContent();
    }
    for (const auto& each : popovers) {
        each->close();
    }
    for (MonitorSection section : allMonitorSections) {
        services.monitor->endDetailedSampling(section);
    }
}

void StatusBarController::popoverDidClose(MonitorSection section) {
    Popover& closed = popover(section);
    // A re-anchor shows it again before a late notification arrives; that one is stale.
    if (closed.isShown()) {
        return;
    }
    closed.removeContent();
    services.monitor->endDetailedSampling(section);
}

void StatusBarController::closePopoversIfOutside(ScreenPoint point) {
    for (const auto& each : popovers) {
        const std::optional<ScreenRect> frame =
            each->hasContent() ? each->windowFrame() : std::nullopt;
        if (frame && frame->contains(point)) {
            return;
        }
    }
    const std::vector<ScreenRect> buttons = statusButtonScreenRects();
    const bool onButton =
        std::any_of(buttons.begin(), buttons.end(),
                    [point](const ScreenRect& rect) { return rect.contains(point); });
    if (!onButton) {
        closePopovers();
    }
}

std::vector<ScreenRect> StatusBarController::statusButtonScreenRects() const {
    std::vector<ScreenRect> rects;
    for (const auto& [section, installed] : statusItems) {
        if (!installed.item->hasButton()) {
            continue;
        }
        if (auto frame = installed.item->windowFrame()) {
            rects.push_back(*frame);
        }
    }
    return rects;
}

bool StatusBarController::isStatusItem(const MenuBarItem& item) const {
    return std::any_of(statusItems.begin(), statusItems.end(),
                       [&item](const auto& entry) { return entry.second.item.get() == &item; });
}

void StatusBarController::noteItemsMoved() {
    if (rebuildingItems) {
        return;
    }
    // Only a drag by the user reorders; the host moving items by itself does not.
    const PointerState pointer = services.host.pointerState();
    if (!pointer.reorderModifier && !pointer.anyButton) {
        return;
    }
    orderSettle = services.runtime.timers.startRepeating(orderSettleSeconds, 0,
                                                         [weakSelf = weak_from_this()] {
                                                             if (auto self = weakSelf.lock()) {
                                                                 self->settleOrder();
                                                             }
                                                         });
}

void StatusBarController::settleOrder() {
    orderSettle.reset();
    if (rebuildingItems) {
        return;
    }
    const std::optional<std::vector<MonitorSection>> visual = visualOrder();
    if (!visual || *visual == desiredOrder()) {
        return;
    }
    // Recorded before the write, so the settings change it causes finds nothing to rebuild.
    applied = *visual;
    MeterSettings::setMenuBarOrder(services.shared, applied);
    SharedSettings::post(services.bus, SharedSettings::Signal::menuBarChanged, services.suite);
}

std::optional<std::vector<MonitorSection>> StatusBarController::visualOrder() const {
    std::vector<std::pair<double, MonitorSection>> positions;
    for (MonitorSection section : applied) {
        const auto installed = statusItems.find(section);
        if (installed == statusItems.end()) {
            continue;
        }
        const MenuBarItem& item = *installed->second.item;
        const std::optional<ScreenRect> frame =
            item.hasButton() ? item.windowFrame() : std::nullopt;
        if (!frame) {
            return std::nullopt;
        }
        positions.emplace_back(frame->x, section);
    }
    std::stable_sort(positions.begin(), positions.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<MonitorSection> order;
    order.reserve(positions.size());
    for (const auto& [x, section] : positions) {
        order.push_back(section);
    }
    return order;
}

void StatusBarController::reanchorOpenPopover() {
    const auto open =
        std::find_if(allMonitorSections.begin(), allMonitorSections.end(),
                     [this](MonitorSection section) { return popover(section).isShown(); });
    if (open == allMonitorSections.end()) {
        return;
    }
    const MonitorSection section = *open;
    Popover& shown = popover(section);
    shown.close();
    // A hidden or covered item leaves its panel closed rather than hanging from nowhere.
    MenuBarItem* item = buttonItem(section);
    if (!item || !item->isWindowVisible()) {
        return;
    }
    const std::optional<ScreenRect> anchor = item->windowFrame();
    if (!anchor) {
        return;
    }
    loadContent(shown, section);
    shown.show(*anchor);
    services.monitor->beginDetailedSampling(section);
}

void StatusBarController::loadContent(Popover& content, MonitorSection section) {
    if (content.hasContent()) {
        return;
    }
    const PanelFitRecord& chosen =
        panelFit.fit(section, availableHeight(section), [&content](const PanelMetrics& metrics) {
            content.setContent(metrics, std::nullopt);
            return content.fittingHeight();
        });
    content.setContent(chosen.metrics, chosen.scroll);
}

double StatusBarController::availableHeight(MonitorSection section) const {
    const PanelBudgetSources sources{
        .environment = [this](const char* name) -> std::optional<std::string> {
            const char* value = services.environment ? services.environment(name) : nullptr;
            return value ? std::optional<std::string>(value) : std::nullopt;
        },
        .itemScreenHeight = [this](MonitorSection itemSection) -> std::optional<double> {
            const MenuBarItem* item = buttonItem(itemSection);
            const std::optional<ScreenRect> screen =
                item ? item->screenVisibleFrame() : std::nullopt;
            return screen ? std::optional(screen->height) : std::nullopt;
        },
        .primaryScreenHeight = [this]() -> std::optional<double> {
            const std::optional<ScreenRect> screen = services.host.primaryScreenVisibleFrame();
            return screen ? std::optional(screen->height) : std::nullopt;
        },
    };
    return corvane::availableHeight(section, sources);
}

MenuBarItem* StatusBarController::buttonItem(MonitorSection section) const {
    const auto installed = statusItems.find(section);
    if (installed == statusItems.end() || !installed->second.item->hasButton()) {
        return nullptr;
    }
    return installed->second.item.get();
}

Popover& StatusBarController::popover(MonitorSection section) const {
    return *popovers[static_cast<std::size_t>(section)];
}

}  // namespace corvane
