#include "CorvaneSettings/SettingsModel.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "CorvaneSettings/SingleWindow.h"
#include "CorvaneShared/JSONFileSettingsStore.h"
#include "CorvaneShared/MeterSettings.h"
#include "tests/CorvaneShared/FileTestSupport.h"

namespace corvane {
namespace {

using Signal = SharedSettings::Signal;

/// A store whose writes fail while `refusing` holds, as a read-only settings folder does.
class RefusingStore final : public SettingsStore {
public:
    bool set(std::string_view key, const SettingValue& value) override {
        return !refusing && inner.set(key, value);
    }
    SettingValue storedValues() const override { return inner.storedValues(); }
    bool refusing = false;

protected:
    SettingValue storedValue(std::string_view key) const override { return inner.object(key); }

private:
    InMemorySettingsStore inner;
};

/// A model on `store` that records the signals it posts and how often it told its observers.
struct Harness {
    explicit Harness(SettingsStore& store)
        : model({.store = store,
                 .post = [this](Signal signal) { posts.push_back(signal); },
                 .startAgent =
                     [this] {
                         ++agentStarts;
                         return true;
                     }}) {
        store.registerDefaults(SharedSettings::factoryDefaults());
    }
    std::vector<Signal> posts;
    int agentStarts = 0;
    int changes = 0;
    SettingsModel model;
    Subscription observing = model.observe([this] { ++changes; });
};

TEST(SettingsModel, OrderEditingKeepsHiddenSectionsInTheirSlots) {
    struct Row {
        const char* name;
        const char* stored;
        std::vector<MonitorSection> hidden;
        MonitorSection moved;
        std::size_t index;
        // Absent: the move is refused and nothing is written.
        std::optional<std::string> written;
    };
    using enum MonitorSection;
    const char* plain = "cpu,memory,storage,sensors";
    const char* shuffled = "storage,sensors,memory,cpu";
    const std::vector<Row> rows = {
        {"hidden storage stays third", plain, {storage}, sensors, 0, "sensors,cpu,storage,memory"},
        {"all shown: plain move", shuffled, {}, cpu, 0, "cpu,storage,sensors,memory"},
        {"hidden first stays first", shuffled, {storage}, cpu, 0, "storage,cpu,sensors,memory"},
        {"garbled, repaired", "memory,memory,cpu", {}, storage, 0, "storage,memory,cpu,sensors"},
        {"hidden meter is not dragged", plain, {storage}, storage, 0, std::nullopt},
        {"past the end", plain, {}, cpu, 4, std::nullopt},
        {"to its own place", plain, {}, memory, 1, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore store;
        store.set("menuBarOrder", row.stored);
        for (const MonitorSection section : row.hidden) {
            store.set(itemVisibilityKey(section), false);
        }
        Harness harness(store);
        EXPECT_EQ(harness.model.moveSection(row.moved, row.index), row.written.has_value());
        EXPECT_EQ(store.string("menuBarOrder"), row.written.value_or(row.stored));
        EXPECT_EQ(harness.posts.size(), row.written ? 1u : 0u);
        // The list shows every section once, hidden ones unchecked in their slots.
        const auto sections = harness.model.sections();
        ASSERT_EQ(sections.size(), 4u);
        for (const auto& shown : sections) {
            const bool hidden =
                std::find(row.hidden.begin(), row.hidden.end(), shown.section) != row.hidden.end();
            EXPECT_EQ(shown.shown, !hidden);
        }
    }
}

TEST(SettingsModel, EachControlWritesItsKeyWithItsTypeAndPostsSettingsOnce) {
    struct Row {
        const char* key;
        std::function<void(SettingsModel&)> change;
        SettingValue expected;
    };
    const std::vector<Row> rows = {
        {"showMemoryItem", [](auto& m) { m.setShown(MonitorSection::memory, false); }, false},
        {"sensorsReadout", [](auto& m) { m.setReadout(MonitorSection::sensors, "fan"); }, "fan"},
        {"meterStyle", [](auto& m) { m.setStyle(MeterStyle::wave); }, "wave"},
        {"meterShape", [](auto& m) { m.setShape(MeterShape::square); }, "square"},
        {"meterLabelStyle", [](auto& m) { m.setLabelStyle(MeterLabelStyle::letters); }, "letters"},
        {"cpuFastCoreAccent",
         [](auto& m) {
             m.setAccent(MeterAccentSlot::cpuFastCore, MeterAccent::custom(1.2, 0.5, 0.12345));
         },
         "custom:srgb:1.0000,0.5000,0.1235"},
        {"storageAccent", [](auto& m) { m.setAccent(MeterAccentSlot::storage, NamedAccent::pine); },
         "pine"},
        {"refreshInterval", [](auto& m) { m.setRefreshInterval(2.0); }, 2.0},
        {"temperatureUnit", [](auto& m) { m.setTemperatureUnit(TemperatureChoice::fahrenheit); },
         "fahrenheit"},
        {"popoverAppearance", [](auto& m) { m.setPanelAppearance("dark"); }, "dark"},
        {"popoverBackground", [](auto& m) { m.setPanelBackground("opaque"); }, "opaque"},
        {"language", [](auto& m) { m.setLanguage("de"); }, "de"},
        {"updatesCheckAutomatically", [](auto& m) { m.setChecksAutomatically(false); }, false},
        {"agentEnabled", [](auto& m) { m.setAgentEnabled(true); }, true},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.key);
        InMemorySettingsStore store;
        Harness harness(store);
        row.change(harness.model);
        const SettingValue stored = store.storedValues();
        EXPECT_EQ(stored, SettingValue({{row.key, row.expected}}));
        EXPECT_EQ(stored[row.key].type(), row.expected.type());
        EXPECT_EQ(harness.posts, std::vector<Signal>{Signal::settings});
        EXPECT_EQ(harness.changes, 1);
    }
}

TEST(SettingsModel, MasterSwitchQuitsOrStartsTheAgent) {
    InMemorySettingsStore store;
    Harness harness(store);
    harness.model.setAgentEnabled(false);
    EXPECT_EQ(harness.posts, (std::vector<Signal>{Signal::settings, Signal::quitAgent}));
    EXPECT_EQ(harness.agentStarts, 0);
    harness.model.setAgentEnabled(true);
    EXPECT_EQ(harness.agentStarts, 1);
    EXPECT_TRUE(store.boolean("agentEnabled"));
}

TEST(SettingsModel, CheckNowPostsOnlyWhileTheUpdaterCanCheck) {
    InMemorySettingsStore store;
    Harness harness(store);
    EXPECT_FALSE(harness.model.checkForUpdates());
    store.set("updaterCanCheck", true);
    EXPECT_TRUE(harness.model.checkForUpdates());
    EXPECT_EQ(harness.posts, std::vector<Signal>{Signal::checkForUpdates});
}

TEST(SettingsModel, ValuesNoControlOffersAreRefusedUnwritten) {
    InMemorySettingsStore store;
    Harness harness(store);
    EXPECT_FALSE(harness.model.setReadout(MonitorSection::storage, "pressure"));
    EXPECT_FALSE(harness.model.setReadout(MonitorSection::cpu, "Usage"));
    EXPECT_FALSE(harness.model.setRefreshInterval(0));
    EXPECT_FALSE(harness.model.setRefreshInterval(-1));
    EXPECT_FALSE(harness.model.setRefreshInterval(std::nan("")));
    EXPECT_FALSE(harness.model.setPanelAppearance("blue"));
    EXPECT_FALSE(harness.model.setPanelBackground(""));
    EXPECT_EQ(store.storedValues(), SettingValue::object());
    EXPECT_TRUE(harness.posts.empty());
}

TEST(SettingsModel, BadStoredValuesReadAsTheirFallbacks) {
    InMemorySettingsStore store(SettingValue{
        {"refreshInterval", "fast"},
        {"showCPUItem", "maybe"},
        {"showSensorsItem", "no"},
        {"cpuAccent", "custom:srgb:0.5,0.5"},
        {"memoryAccent", "custom:srgb:nan,0,0"},
        {"accentChoice", "amber"},
        {"popoverAppearance", 7},
        {"popoverBackground", true},
        {"language", ""},
        {"temperatureUnit", "kelvin"},
        {"menuBarOrder", 42},
        {"agentEnabled", "yes"},
        {"updatesAvailable", ""},
        {"cpuReadout", "Usage"},
    });
    Harness harness(store);
    const SettingsModel& model = harness.model;
    EXPECT_EQ(model.refreshInterval(), 1.0);
    // A visibility key that is not a Boolean counts as shown, whatever its text says.
    EXPECT_EQ(model.sections(),
              (std::vector<SettingsModel::SectionRow>{{MonitorSection::sensors, true},
                                                      {MonitorSection::storage, true},
                                                      {MonitorSection::memory, true},
                                                      {MonitorSection::cpu, true}}));
    // An accent that does not parse shows what the migration would have stored.
    EXPECT_EQ(model.accent(MeterAccentSlot::cpu), MeterAccent(NamedAccent::amber));
    EXPECT_EQ(model.accent(MeterAccentSlot::memory), MeterAccent(NamedAccent::amber));
    EXPECT_EQ(model.panelAppearance(), "system");
    EXPECT_EQ(model.panelBackground(), "translucent");
    EXPECT_EQ(model.language(), "system");
    EXPECT_EQ(model.temperatureUnit(), TemperatureChoice::system);
    EXPECT_TRUE(model.agentEnabled());
    EXPECT_EQ(model.offeredUpdate(), std::nullopt);
    EXPECT_EQ(model.readout(MonitorSection::cpu), "temperature");
}

TEST(SettingsModel, ACorruptFileReadsAsFactorySettingsAndTakesTheNextChange) {
    testing::TemporaryDirectory folder;
    const auto file = folder / "suite.json";
    testing::writeFile(file, "{\"meterStyle\": \"wave\",");
    JSONFileSettingsStore store(file);
    Harness harness(store);
    EXPECT_EQ(MeterSettings::style(harness.model.settings()), MeterStyle::bars);
    harness.model.setShape(MeterShape::square);
    EXPECT_EQ(JSONFileSettingsStore(file).storedValues(), SettingValue({{"meterShape", "square"}}));
    EXPECT_EQ(testing::namesStartingWith(folder.path(), "suite.json.corrupt-").size(), 1u);
}

TEST(SettingsModel, AStoreThatRefusesKeepsTheChoiceOnScreenUntilAWriteGoesThrough) {
    RefusingStore store;
    Harness harness(store);
    store.refusing = true;
    harness.model.setStyle(MeterStyle::wave);
    harness.model.setShown(MonitorSection::cpu, false);
    EXPECT_TRUE(harness.model.hasUnsavedChanges());
    EXPECT_EQ(MeterSettings::style(harness.model.settings()), MeterStyle::wave);
    EXPECT_FALSE(harness.model.sections().back().shown);
    EXPECT_EQ(store.storedValues(), SettingValue::object());
    EXPECT_TRUE(harness.posts.empty());
    EXPECT_EQ(harness.changes, 2);

    store.refusing = false;
    harness.model.setShape(MeterShape::square);
    EXPECT_FALSE(harness.model.hasUnsavedChanges());
    EXPECT_EQ(
        store.storedValues(),
        SettingValue({{"meterShape", "square"}, {"meterStyle", "wave"}, {"showCPUItem", false}}));
    EXPECT_EQ(harness.posts, std::vector<Signal>{Signal::settings});
}

TEST(SettingsModel, LoginItemProblemsAreReported) {
    InMemorySettingsStore store;
    std::vector<bool> requests;
    SettingsModel model(
        {.store = store, .setLoginItem = [&](bool on) -> std::optional<std::string> {
             requests.push_back(on);
             return on ? std::optional<std::string>("read-only place") : std::nullopt;
         }});
    EXPECT_EQ(model.setLoginItem(true), "read-only place");
    EXPECT_EQ(model.setLoginItem(false), std::nullopt);
    EXPECT_EQ(requests, (std::vector<bool>{true, false}));
    EXPECT_EQ(SettingsModel({.store = store}).setLoginItem(true).has_value(), true);
}

TEST(SingleWindow, ServiceNameIsPerSuiteAndAValidBusName) {
    const std::string plain = settingsServiceName("io.test.App", "G.io.test.App", "G.io.test.App");
    EXPECT_EQ(plain, "io.test.App.Settings");
    const std::string odd = settingsServiceName("io.test.App", "it's \"mine\" ü", "G.io.test.App");
    const std::string other =
        settingsServiceName("io.test.App", "it's \"mine\" u", "G.io.test.App");
    EXPECT_NE(odd, other);
    EXPECT_EQ(odd.rfind("io.test.App.Settings.s", 0), 0u);
    EXPECT_EQ(odd.size(), plain.size() + 2 + 16);
    EXPECT_EQ(
        odd.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._"),
        std::string::npos);
}

}  // namespace
}  // namespace corvane
