#include "CorvaneAgent/StatusBarController.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <stdexcept>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SettingsStore.h"
#include "Foundation/ObserverList.h"
#include "tests/CorvaneAgent/FakeSystemStatistics.h"
#include "tests/support/LocalSignalBus.h"
#include "tests/support/ManualScheduler.h"

namespace corvane {
namespace {

using testing::FakeReadings;
using testing::FakeSystemStatistics;
using testing::LocalSignalBus;
using testing::ManualScheduler;
using enum MonitorSection;

class FakeItem final : public MenuBarItem {
public:
    FakeItem(double length, std::string name, ScreenRect frame)
        : name(std::move(name)), width(length), frame(frame) {}

    const std::string& autosaveName() const override { return name; }
    void setLength(double points) override { width = points; }
    double length() const override { return width; }
    void setAccessibilityLabel(const std::string& text) override { label = text; }
    void setToolTip(const std::string& text) override { toolTip = text; }
    void setDrawing(std::function<ItemImage(double, double)> draw) override {
        drawing = std::move(draw);
    }
    void setNeedsDisplay() override { ++redraws; }
    void setAction(std::function<void()> handler) override { action = std::move(handler); }
    bool hasButton() const override { return button; }
    std::optional<ScreenRect> windowFrame() const override { return frame; }
    bool isWindowVisible() const override { return visible; }
    std::optional<ScreenRect> screenVisibleFrame() const override { return screen; }

    std::string name;
    double width;
    std::string label, toolTip;
    std::function<ItemImage(double, double)> drawing;
    std::function<void()> action;
    int redraws = 0;
    bool button = true;
    bool visible = true;
    std::optional<ScreenRect> frame;
    std::optional<ScreenRect> screen = ScreenRect{0, 24, 1920, 1056};
};

// Items installed later go left of earlier ones, as on a real bar.
class FakeHost final : public MenuBarHost {
public:
    std::unique_ptr<MenuBarItem> addItem(double length, const std::string& name) override {
        const double x = 1800 - 50 * static_cast<double>(added.size());
        auto item = std::make_unique<FakeItem>(length, name, ScreenRect{x, 0, 40, 24});
        added.push_back(name);
        if (movesOnAdd) {
            for (FakeItem* other : live) {
                moved.notify(*other);
            }
        }
        live.push_back(item.get());
        return item;
    }
    void removeItem(MenuBarItem& item) override { std::erase(live, &item); }
    std::optional<ScreenRect> primaryScreenVisibleFrame() const override { return primary; }
    PointerState pointerState() const override { return pointer; }
    Subscription observeItemMoved(std::function<void(MenuBarItem&)> handler) override {
        return moved.add(std::move(handler));
    }
    Subscription observeScreensChanged(std::function<void()> handler) override {
        return screens.add(std::move(handler));
    }
    Subscription observeWorkspaceChanged(std::function<void()> handler) override {
        return workspace.add(std::move(handler));
    }
    Subscription observePointerPresses(std::function<void(ScreenPoint, bool)> handler) override {
        return presses.add(std::move(handler));
    }

    FakeItem& item(MonitorSection section) {
        const std::string prefix = "Corvane." + std::string(sectionKey(section)) + ".";
        for (FakeItem* each : live) {
            if (each->name.starts_with(prefix)) {
                return *each;
            }
        }
        throw std::runtime_error("no item for " + prefix);
    }

    std::vector<std::string> added;
    std::vector<FakeItem*> live;
    bool movesOnAdd = false;
    PointerState pointer;
    std::optional<ScreenRect> primary = ScreenRect{0, 24, 1920, 1056};
    ObserverList<MenuBarItem&> moved;
    ObserverList<> screens, workspace;
    ObserverList<ScreenPoint, bool> presses;
};

class FakePopover final : public Popover {
public:
    bool hasContent() const override { return content.has_value(); }
    void setContent(const PanelMetrics& metrics, std::optional<double> scroll) override {
        content = {metrics, scroll};
    }
    void removeContent() override { content.reset(); }
    double fittingHeight() const override { return height(content->first); }
    void show(const ScreenRect& at) override { anchor = at; }
    void close() override {
        if (!anchor) {
            return;
        }
        anchor.reset();
        if (deliverLater) {
            deliverLater([this] { didClose.notify(); });
        } else {
            didClose.notify();
        }
    }
    bool isShown() const override { return anchor.has_value(); }
    std::optional<ScreenRect> windowFrame() const override {
        if (!anchor) {
            return std::nullopt;
        }
        return ScreenRect{anchor->x, anchor->y + anchor->height, 300, 400};
    }
    void refreshAppearance() override { ++appearanceRefreshes; }
    Subscription observeDidClose(std::function<void()> handler) override {
        return didClose.add(std::move(handler));
    }

    std::optional<std::pair<PanelMetrics, std::optional<double>>> content;
    std::optional<ScreenRect> anchor;
    std::function<double(const PanelMetrics&)> height = [](const PanelMetrics&) { return 400.0; };
    std::function<void()> closeAction;
    /// Set: the did-close notification comes later, through this.
    std::function<void(std::function<void()>)> deliverLater;
    int appearanceRefreshes = 0;
    ObserverList<> didClose;
};

class FakeMeters final : public MeterViews {
public:
    double itemWidth(MonitorSection section) const override { return widths.at(section); }
    std::string drawSignature(MonitorSection section) const override {
        return signatures.at(section);
    }
    ItemImage draw(MonitorSection, double, double) const override { return {}; }
    std::string readout(MonitorSection section) const override {
        return "readout " + signatures.at(section);
    }

    std::map<MonitorSection, double> widths = {
        {cpu, 30}, {memory, 31}, {storage, 32}, {sensors, 33}};
    std::map<MonitorSection, std::string> signatures = {
        {cpu, "c"}, {memory, "m"}, {storage, "s"}, {sensors, "t"}};
};

class FakeStorage final : public StorageSource {
public:
    std::optional<StorageReading> readStorage() override { return StorageReading{1000, 250, "/"}; }
};

void clearStore(SettingsStore& store) {
    const SettingValue stored = store.storedValues();
    for (const auto& [key, value] : stored.items()) {
        store.remove(key);
    }
}

std::string positionKey(const std::string& name) {
    return "NSStatusItem Preferred Position " + name;
}

class StatusBarControllerTest : public ::testing::Test {
protected:
    std::shared_ptr<StatusBarController> makeController() {
        monitor = SystemMonitor::create(MonitorServices{
            .settings = shared,
            .runtime = scheduler.runtime(),
            .statistics = std::make_unique<FakeSystemStatistics>(readings),
            .storage = std::make_shared<FakeStorage>(),
        });
        return StatusBarController::create(StatusBarServices{
            .monitor = monitor,
            .host = host,
            .meters = meters,
            .makePopover =
                [this](MonitorSection section, std::function<void()> close) {
                    auto made = std::make_unique<FakePopover>();
                    made->closeAction = std::move(close);
                    popovers[section] = made.get();
                    return made;
                },
            .shared = shared,
            .own = own,
            .bus = bus,
            .suite = "suite",
            .runtime = scheduler.runtime(),
            .observeSettingsChanges = [this](auto handler) { return settingsChanged.add(handler); },
            .translate = nullptr,
            .environment = [this](const char*) { return budget; },
        });
    }

    void changeSettings() {
        settingsChanged.notify();
        scheduler.drainMainQueue();
    }
    void click(MonitorSection section) { host.item(section).action(); }
    FakePopover& popover(MonitorSection section) { return *popovers.at(section); }
    std::set<MonitorSection> open() const { return monitor->openPopovers(); }

    ManualScheduler scheduler;
    InMemorySettingsStore shared, own;
    LocalSignalBus bus;
    FakeHost host;
    FakeMeters meters;
    FakeReadings readings;
    ObserverList<> settingsChanged;
    const char* budget = nullptr;
    std::shared_ptr<SystemMonitor> monitor;
    std::map<MonitorSection, FakePopover*> popovers;
};

TEST_F(StatusBarControllerTest, InstallsTheVisibleSectionsLastFirstWithDescendingPositions) {
    struct Row {
        const char* name;
        SettingValue order;
        std::vector<MonitorSection> hidden;
        SettingValue storedGeneration;
        std::vector<std::string> installed;
        std::vector<double> positions;  // of `installed`, in the same order
        int generation;
    };
    const std::vector<Row> rows = {
        {"nothing stored",
         nullptr,
         {},
         nullptr,
         {"Corvane.cpu.1", "Corvane.memory.1", "Corvane.storage.1", "Corvane.sensors.1"},
         {4000, 4100, 4200, 4300},
         1},
        {"partial order, a hidden meter",
         "cpu,memory",
         {storage},
         7,
         {"Corvane.sensors.8", "Corvane.memory.8", "Corvane.cpu.8"},
         {4000, 4100, 4200},
         8},
        {"every meter hidden", nullptr, {cpu, memory, storage, sensors}, 3, {}, {}, 3},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        host.added.clear();
        clearStore(shared);
        clearStore(own);
        shared.set("menuBarOrder", row.order);
        for (MonitorSection section : row.hidden) {
            shared.set(itemVisibilityKey(section), false);
        }
        own.set("Corvane.itemGeneration", row.storedGeneration);
        auto controller = makeController();

        EXPECT_EQ(host.added, row.installed);
        for (std::size_t k = 0; k < row.installed.size(); ++k) {
            EXPECT_EQ(own.object(positionKey(row.installed[k])), row.positions[k]);
        }
        EXPECT_EQ(controller->appliedOrder().size(), row.installed.size());
        EXPECT_EQ(own.object("Corvane.itemGeneration"), row.generation);
    }
}

TEST_F(StatusBarControllerTest, HidingAMeterRebuildsUnderANewGenerationAndDropsTheOldRecords) {
    own.set(positionKey("Corvane.cpu.6"), 1.0);  // older than the previous generation: kept
    auto controller = makeController();
    own.set("NSStatusItem Visible Corvane.memory.1", true);
    ASSERT_EQ(host.live.size(), 4u);
    EXPECT_EQ(host.item(storage).label, "SSD");

    shared.set("showStorageItem", false);
    changeSettings();

    EXPECT_EQ(host.added.size(), 7u);
    std::vector<std::string> names;
    for (FakeItem* item : host.live) {
        names.push_back(item->name);
    }
    EXPECT_EQ(names,
              (std::vector<std::string>{"Corvane.cpu.2", "Corvane.memory.2", "Corvane.sensors.2"}));
    EXPECT_EQ(own.object("Corvane.itemGeneration"), 2);
    for (const char* name :
         {"Corvane.cpu.1", "Corvane.memory.1", "Corvane.storage.1", "Corvane.sensors.1"}) {
        EXPECT_TRUE(own.object(positionKey(name)).is_null()) << name;
    }
    EXPECT_TRUE(own.object("NSStatusItem Visible Corvane.memory.1").is_null());
    EXPECT_EQ(own.object(positionKey("Corvane.cpu.6")), 1.0);
    EXPECT_EQ(own.object(positionKey("Corvane.sensors.2")), 4200.0);

    // A change that leaves order and visibility alone installs nothing.
    shared.set("meterShape", "square");
    changeSettings();
    EXPECT_EQ(host.added.size(), 7u);
    EXPECT_EQ(own.object("Corvane.itemGeneration"), 2);
}

TEST_F(StatusBarControllerTest, SettingsChangesResizeRedrawAndRefreshAnOpenPanel) {
    auto controller = makeController();
    click(cpu);
    scheduler.drainMainQueue();
    const int before = host.item(memory).redraws;

    meters.widths[memory] = 57;
    changeSettings();
    EXPECT_EQ(host.item(memory).length(), 57);
    EXPECT_EQ(host.item(memory).redraws, before + 1);
    EXPECT_EQ(popover(cpu).appearanceRefreshes, 1);
    EXPECT_EQ(popover(memory).appearanceRefreshes, 0);
}

TEST_F(StatusBarControllerTest, RefreshRedrawsOnlyMetersWhoseSignatureChanged) {
    auto controller = makeController();
    monitor->refresh();
    for (MonitorSection section : allMonitorSections) {
        EXPECT_EQ(host.item(section).redraws, 1);
    }
    monitor->refresh();
    meters.signatures[memory] = "m2";
    monitor->refresh();
    EXPECT_EQ(host.item(cpu).redraws, 1);
    EXPECT_EQ(host.item(memory).redraws, 2);
    EXPECT_EQ(host.item(memory).toolTip, "readout m2");
}

TEST_F(StatusBarControllerTest, ClicksOpenCloseAndSwitchPanels) {
    struct Row {
        const char* name;
        std::optional<MonitorSection> clickedFirst;  // clicked, and the main queue drained
        std::function<void()> then;
        std::optional<MonitorSection> panel;  // open, with content, and shown unless...
        bool stillOpening = false;            // ...its opening is still in progress
    };
    const auto press = [this](double x, double y, bool onItem) {
        host.presses.notify(ScreenPoint{x, y}, onItem);
    };
    // The storage panel waits for a storage read, so its opening stays in progress until the
    // background task has run.
    const std::vector<Row> rows = {
        {"one click", cpu, [] {}, cpu},
        {"opening in progress", storage, [] {}, storage, true},
        {"second click", cpu, [&] { click(cpu); }, {}},
        {"second click before the opening began",
         {},
         [&] { click(storage), click(storage), scheduler.settle(); },
         {}},
        {"second click during the opening",
         storage,
         [&] { click(storage), scheduler.settle(); },
         {}},
        {"another item", cpu, [&] { click(memory), scheduler.drainMainQueue(); }, memory},
        {"button gone before the opening ends",
         storage,
         [&] { host.item(storage).button = false, scheduler.settle(); },
         {}},
        {"the panel's own close", cpu, [&] { popover(cpu).closeAction(); }, {}},
        {"press inside the panel", cpu, [&] { press(popover(cpu).anchor->x + 5, 100, false); },
         cpu},
        {"press on the desktop", cpu, [&] { press(10, 900, false); }, {}},
        {"press on an item's button", cpu,
         [&] { press(host.item(sensors).frame->x + 1, 5, false); }, cpu},
        {"press reported on an item", cpu, [&] { press(10, 900, true); }, cpu},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        auto controller = makeController();
        if (row.clickedFirst) {
            click(*row.clickedFirst);
            scheduler.drainMainQueue();
        }
        row.then();
        for (MonitorSection section : allMonitorSections) {
            const bool shown = row.panel == section && !row.stillOpening;
            EXPECT_EQ(popover(section).isShown(), shown) << sectionKey(section);
            EXPECT_EQ(popover(section).hasContent(), row.panel == section) << sectionKey(section);
            if (shown) {
                EXPECT_EQ(popover(section).anchor, host.item(section).frame);
            }
        }
        EXPECT_EQ(open(), row.panel ? std::set{*row.panel} : std::set<MonitorSection>{});
    }
}

TEST_F(StatusBarControllerTest, PanelContentFitsTheBudgetOfTheItemsScreen) {
    struct Row {
        const char* name;
        const char* environment;
        bool itemHasScreen;
        PanelMetrics metrics;
        std::optional<double> scroll;
    };
    // Step 1 needs 1100 points, step 2 1000, the smaller ones 900.
    const std::vector<Row> rows = {
        {"item's screen, 1056 high", nullptr, true, PanelMetrics::steps[1], std::nullopt},
        {"primary screen, 956 high", nullptr, false, PanelMetrics::steps[2], std::nullopt},
        {"environment, 200", "200", true, PanelMetrics::steps[3], 126},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        budget = row.environment;
        host.primary = ScreenRect{0, 24, 1920, 956};
        auto controller = makeController();
        popover(cpu).height = [](const PanelMetrics& m) {
            return m.usageGraphHeight == 70 ? 1100.0 : m.usageGraphHeight == 60 ? 1000.0 : 900.0;
        };
        if (!row.itemHasScreen) {
            host.item(cpu).screen.reset();
        }
        click(cpu);
        ASSERT_TRUE(popover(cpu).content);
        EXPECT_EQ(popover(cpu).content->first, row.metrics);
        EXPECT_EQ(popover(cpu).content->second, row.scroll);
    }
}

TEST_F(StatusBarControllerTest, NothingRunsOnceTheControllerIsGone) {
    auto controller = makeController();
    click(storage);            // its opening is queued
    settingsChanged.notify();  // and so is a settings pass
    controller.reset();
    EXPECT_TRUE(host.live.empty());
    scheduler.settle();
    monitor->refresh();
    EXPECT_TRUE(open().empty());
    EXPECT_EQ(host.added.size(), 4u);
}

class OrderSettleTest : public StatusBarControllerTest {
protected:
    // Puts cpu in front of the others, as a drag to the far left would.
    void dragCPUToTheLeft() {
        host.item(cpu).frame->x = 100;
        host.moved.notify(host.item(cpu));
    }
};

TEST_F(OrderSettleTest, OneSettleAfterTheLastDragMoveWritesTheOrderAndTellsTheCompanion) {
    auto controller = makeController();
    host.pointer.reorderModifier = true;
    dragCPUToTheLeft();
    scheduler.advance(0.2);
    dragCPUToTheLeft();
    scheduler.advance(0.29);
    EXPECT_TRUE(shared.object("menuBarOrder").is_null()) << "0.3 s after the last move only";

    scheduler.advance(0.02);
    EXPECT_EQ(shared.object("menuBarOrder"), "cpu,sensors,storage,memory");
    EXPECT_EQ(bus.posts, std::vector<std::string>{"suite.menuBarChanged"});
    EXPECT_EQ(controller->appliedOrder(), (std::vector{cpu, sensors, storage, memory}));
    scheduler.advance(1);
    EXPECT_EQ(bus.posts.size(), 1u);

    changeSettings();  // the write's own notification
    EXPECT_EQ(host.added.size(), 4u) << "the dragged order is already in place";
}

TEST_F(OrderSettleTest, MovesThatAreNoUserReorderChangeNothing) {
    struct Row {
        const char* name;
        PointerState pointer;
        bool reorder;
        bool frameLost;
        bool written;
    };
    const std::vector<Row> rows = {
        {"no modifier, no button", {false, false}, true, false, false},
        {"a button held", {false, true}, true, false, true},
        {"order unchanged", {true, false}, false, false, false},
        {"an item without a window", {true, false}, true, true, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        clearStore(shared);
        bus.posts.clear();
        host.pointer = row.pointer;
        auto controller = makeController();
        if (row.reorder) {
            host.item(cpu).frame->x = 100;
        }
        if (row.frameLost) {
            host.item(storage).frame.reset();
        }
        host.moved.notify(host.item(cpu));
        scheduler.advance(1);
        EXPECT_EQ(!shared.object("menuBarOrder").is_null(), row.written);
        EXPECT_EQ(bus.postsOf("suite.menuBarChanged"), row.written ? 1u : 0u);
    }
}

TEST_F(OrderSettleTest, MovesCausedByARebuildScheduleNoSettle) {
    auto controller = makeController();
    host.pointer.reorderModifier = true;
    host.movesOnAdd = true;
    shared.set("showMemoryItem", false);
    changeSettings();
    ASSERT_EQ(host.live.size(), 3u);
    EXPECT_EQ(scheduler.timersStarted(), 0u);

    dragCPUToTheLeft();  // the next turn: moves count again
    EXPECT_EQ(scheduler.timersStarted(), 1u);
}

TEST_F(StatusBarControllerTest, ReanchoringReopensOnlyBelowAVisibleItem) {
    struct Row {
        const char* name;
        void (*trigger)(FakeHost&);
        bool visible;
        bool lateDidClose = false;
    };
    const std::vector<Row> rows = {
        {"screens changed", [](FakeHost& h) { h.screens.notify(); }, true},
        {"workspace changed", [](FakeHost& h) { h.workspace.notify(); }, true},
        {"item moved", [](FakeHost& h) { h.moved.notify(h.item(memory)); }, true},
        {"item hidden", [](FakeHost& h) { h.screens.notify(); }, false},
        {"did-close after the reopening", [](FakeHost& h) { h.screens.notify(); }, true, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        auto controller = makeController();
        click(memory);
        scheduler.drainMainQueue();
        if (row.lateDidClose) {
            popover(memory).deliverLater = [this](auto notify) { scheduler.post(notify); };
        }
        host.item(memory).frame->x = 700;
        host.item(memory).visible = row.visible;
        row.trigger(host);
        scheduler.drainMainQueue();
        EXPECT_EQ(popover(memory).isShown(), row.visible);
        EXPECT_EQ(popover(memory).hasContent(), row.visible);
        EXPECT_EQ(open().contains(memory), row.visible);
        if (row.visible) {
            EXPECT_EQ(popover(memory).anchor->x, 700);
        }
    }
}

}  // namespace
}  // namespace corvane
