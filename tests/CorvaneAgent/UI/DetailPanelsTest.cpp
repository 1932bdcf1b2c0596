#include <QApplication>
#include <QEvent>
#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/FieldObservers.h"
#include "CorvaneAgent/SensorReadings.h"
#include "CorvaneAgent/UI/MenuBarViews.h"
#include "CorvaneShared/SettingsStore.h"
#include "CorvaneShared/UI/SvgSymbols.h"

namespace corvane {
namespace {

// The model's fields under the test's control; `publish` ends a step as a refresh does.
class FakePanelSource final : public PanelSource {
public:
    explicit FakePanelSource(MonitorFields& fields, FieldObservers& observers)
        : values(fields), observers(observers) {}

    const MonitorFields& fields() const override { return values; }
    Subscription observe(MonitorField field, std::function<void()> onChange) override {
        return observers.observe(field, std::move(onChange));
    }
    std::string thermalStateLabel() const override { return "Nominal"; }
    std::vector<CoreTier> coreTiers() const override {
        return {{"Performance", 4}, {std::string(300, 'E'), 8}};
    }
    std::vector<bool> performanceCores() const override { return {true, true, false}; }
    int totalCores() const override { return 12; }

private:
    MonitorFields& values;
    FieldObservers& observers;
};

constexpr MonitorSection allSections[] = {MonitorSection::cpu, MonitorSection::memory,
                                          MonitorSection::storage, MonitorSection::sensors};

// Everything a sampler may hand over at its worst: totals of 0, used above total, rates of
// terabytes per second, 60 sensors and fans, names of 300 bytes and bytes that are no UTF-8.
MonitorFields hostileFields() {
    MonitorFields fields;
    const std::string longName(300, 'W');
    const std::string invalidUTF8 = "\xff\xfe\xc3(kworker\x80" + std::string(100, '\xe2');
    fields.totalMemory = 0;
    fields.usedMemory = 5ull << 40;
    fields.wiredMemory = 3ull << 40;
    fields.swapUsed = 7ull << 30;
    fields.swapTotal = 0;
    fields.pageInsPerSecond = 5'000'000'000'000ull;
    fields.pageOutsPerSecond = ~0ull;
    fields.diskReadPerSecond = 1'200'000'000;
    fields.diskWritePerSecond = ~0ull;
    fields.availableStorage = 9'000'000'000'000;
    fields.totalStorage = 0;
    fields.volumeName = longName + invalidUTF8;
    fields.chipName = invalidUTF8 + longName;
    fields.userCPUUsage = 3;
    fields.systemCPUUsage = 2;
    fields.cpuUsage = 1e9;
    fields.gpuInUseMemory = ~0ull;
    fields.cpuTemperature = 1e12;
    fields.loadAverages = {1e9, 123456.78, 0};
    fields.uptime = 1e18;
    fields.coreUsages = std::vector<double>(256, 0.5);
    for (const std::string& name : {longName, invalidUTF8}) {
        ProcessMetric process{4242, name, 12000, ~0ull, 3'000'000'000'000ull, ~0ull};
        fields.topCPUProcesses.push_back(process);
        fields.topMemoryProcesses.push_back(process);
        fields.topDiskProcesses.push_back(process);
    }
    for (int index = 0; index < 60; ++index) {
        fields.sensorGroups.push_back({SensorCategory::other, 80.0 + index});
        fields.fans.push_back({"F" + std::to_string(index), index * 1000, 123456.0, 0.0, 10.0});
        fields.power.push_back({PowerChannel::cpu, 1e7});
    }
    fields.battery = BatteryInfo{1e6, -4, 1 << 30, 1e5, -1e5, false, true, true, 1 << 30};
    return fields;
}

struct PanelFixture {
    InMemorySettingsStore settings;
    MonitorFields fields;
    FieldObservers observers;
    std::function<std::string(std::string_view)> translate = [](std::string_view key) {
        return std::string(key);
    };

    std::unique_ptr<MonitorPopover> panel(MonitorSection section,
                                          std::optional<double> scroll = std::nullopt) {
        PanelEnvironment environment{
            .units = {settings, [] { return std::string("en"); }, translate,
                      [](const char* name) -> const char* {
                          return std::string_view(name) == "LANG" ? "en_US.UTF-8" : nullptr;
                      }},
        };
        return std::unique_ptr<MonitorPopover>(
            makePanel(section, std::make_unique<FakePanelSource>(fields, observers),
                      PanelMetrics::steps[0], scroll, {}, environment));
    }
};

// Whether every part of `panel` lies within its 300 points.
bool staysWithinTheWidth(QWidget& panel) {
    for (QWidget* part : panel.findChildren<QWidget*>()) {
        if (!part->isVisibleTo(&panel)) {
            continue;
        }
        const QRect placed(part->mapTo(&panel, QPoint(0, 0)), part->size());
        if (placed.left() < 0 || placed.right() >= MonitorPopover::panelWidth) {
            ADD_FAILURE() << part->metaObject()->className() << " spans " << placed.left() << ".."
                          << placed.right();
            return false;
        }
    }
    return true;
}

TEST(DetailPanels, HostileReadingsNeverWidenThePanel) {
    for (MonitorSection section : allSections) {
        for (std::optional<double> scroll : {std::optional<double>(), std::optional<double>(-79)}) {
            PanelFixture fixture;
            fixture.fields = hostileFields();
            auto panel = fixture.panel(section, scroll);
            panel->show();
            QApplication::processEvents();
            EXPECT_EQ(panel->width(), MonitorPopover::panelWidth) << sectionKey(section);
            EXPECT_EQ(panel->sizeHint().width(), MonitorPopover::panelWidth) << sectionKey(section);
            EXPECT_TRUE(staysWithinTheWidth(*panel)) << sectionKey(section);
            // The rendering itself must survive the readings, not only the layout.
            EXPECT_FALSE(panel->grab().isNull());
        }
    }
}

TEST(DetailPanels, EmptyModelShowsNoOptionalSections) {
    PanelFixture fixture;
    auto sensors = fixture.panel(MonitorSection::sensors);
    const int withoutExtras = sensors->heightForWidth(MonitorPopover::panelWidth);
    fixture.fields.battery = BatteryInfo{80, 90, 12, 12.1, -1.5, false, false, false, 95};
    fixture.fields.fans = {{"F0Ac", 0, 2100, 1200, 5000}};
    fixture.observers.markChanged(MonitorField::battery);
    fixture.observers.markChanged(MonitorField::fans);
    fixture.observers.announceChanges();
    // The battery (seven rows) and the fan arrive with their sections while the panel is open.
    EXPECT_GT(sensors->heightForWidth(MonitorPopover::panelWidth), withoutExtras + 7 * 12);
}

// A translation longer than a row wraps, and the panel grows by the lines it needs rather
// than cutting the message short.
TEST(DetailPanels, ALongMessageInPlaceOfRowsWraps) {
    PanelFixture shortMessage;
    const int oneLine =
        shortMessage.panel(MonitorSection::sensors)->heightForWidth(MonitorPopover::panelWidth);
    PanelFixture longMessage;
    longMessage.translate = [](std::string_view key) {
        return key == PlatformProfile::linuxDesktop().noTemperatureSensors
                   ? "Temperature sensors were looked for in many places of the system, "
                     "and not a single one of them could be read"
                   : std::string(key);
    };
    auto panel = longMessage.panel(MonitorSection::sensors);
    EXPECT_GE(panel->heightForWidth(MonitorPopover::panelWidth), oneLine + 12);
}

// Every sensor category and power channel names a symbol Corvane ships, so no row of the
// sensors panel draws a blank where its symbol belongs.
TEST(DetailPanels, EverySensorAndPowerSymbolIsShipped) {
    for (SensorCategory category : allSensorCategories) {
        EXPECT_TRUE(SvgSymbols::shared().imageSize(icon(category))) << icon(category);
    }
    for (PowerChannel channel : allPowerChannels) {
        EXPECT_TRUE(SvgSymbols::shared().imageSize(icon(channel))) << icon(channel);
    }
}

// Counts the events of one type that reach the objects it filters.
class EventCounter final : public QObject {
public:
    explicit EventCounter(QEvent::Type type) : type(type) {}
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == type ? 1 : 0;
        return false;
    }

private:
    QEvent::Type type;
};

// In a window whose layout asks the panel for its height, as the panel window's does, a shown
// panel's layout comes to rest: measuring it must not ask for another layout pass.
TEST(DetailPanels, AShownPanelsLayoutComesToRest) {
    PanelFixture fixture;
    fixture.fields = hostileFields();
    QWidget window;
    (new QVBoxLayout(&window))->addWidget(fixture.panel(MonitorSection::cpu).release());
    window.show();
    for (int pass = 0; pass < 5; ++pass) {
        QApplication::processEvents();
    }
    EventCounter layoutRequests(QEvent::LayoutRequest);
    QApplication::instance()->installEventFilter(&layoutRequests);
    for (int pass = 0; pass < 5; ++pass) {
        QApplication::processEvents();
    }
    EXPECT_EQ(layoutRequests.count, 0);
}

TEST(DetailPanels, UnchangedRefreshRepaintsNothing) {
    for (MonitorSection section : allSections) {
        PanelFixture fixture;
        fixture.fields = hostileFields();
        auto panel = fixture.panel(section);
        panel->show();
        QApplication::processEvents();
        EventCounter paints(QEvent::Paint);
        panel->installEventFilter(&paints);
        for (QWidget* part : panel->findChildren<QWidget*>()) {
            part->installEventFilter(&paints);
        }
        // A refresh that announces every field, all with the values already shown.
        for (std::size_t field = 0; field < monitorFieldCount; ++field) {
            fixture.observers.markChanged(static_cast<MonitorField>(field));
        }
        fixture.observers.announceChanges();
        QApplication::processEvents();
        EXPECT_EQ(paints.count, 0) << sectionKey(section);

        // A shown value that changes does repaint.
        fixture.fields.userCPUHistory.back() = 0.5;
        fixture.fields.pageInsPerSecond = 1;
        fixture.fields.diskReadPerSecond = 1;
        fixture.fields.fans.front().rpm = 2000;
        for (MonitorField field : {MonitorField::userCPUHistory, MonitorField::pageInsPerSecond,
                                   MonitorField::diskReadPerSecond, MonitorField::fans}) {
            fixture.observers.markChanged(field);
        }
        fixture.observers.announceChanges();
        QApplication::processEvents();
        EXPECT_GT(paints.count, 0) << sectionKey(section);
    }
}

TEST(DetailPanels, AppearanceSettingRecoloursAnOpenPanel) {
    PanelFixture fixture;
    fixture.settings.set("popoverAppearance", "light");
    auto panel = fixture.panel(MonitorSection::memory);
    EXPECT_EQ(panel->scheme(), PopoverScheme::light);
    fixture.settings.set("popoverAppearance", "Dark");
    panel->applyAppearance();
    // Not exactly "dark": the desktop decides, which reads as dark without a preference.
    EXPECT_EQ(panel->scheme(), PopoverScheme::dark);
    fixture.settings.set("popoverAppearance", "light");
    panel->applyAppearance();
    EXPECT_EQ(panel->scheme(), PopoverScheme::light);
}

}  // namespace
}  // namespace corvane
