#include "CorvaneShared/MeterSettings.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace corvane {
namespace {

using enum MonitorSection;
using Sections = std::vector<MonitorSection>;

TEST(MeterSettings, OrderKeepsFirstNamedSectionsThenFillsInDefaultOrder) {
    struct Row {
        const char* name;
        const char* stored;
        Sections expected;
    };
    const std::vector<Row> rows = {
        {"repeat", "memory,memory,cpu", {memory, cpu, sensors, storage}},
        {"empty pieces", ",,cpu,", {cpu, sensors, storage, memory}},
        {"untrimmed and capitalised", " cpu,CPU", {sensors, storage, memory, cpu}},
        {"empty", "", {sensors, storage, memory, cpu}},
        {"complete", "storage,cpu,memory,sensors", {storage, cpu, memory, sensors}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(MeterSettings::order(row.stored), row.expected);
    }
}

TEST(MeterSettings, SetMenuBarOrderKeepsHiddenSectionsInTheirSlots) {
    struct Row {
        const char* name;
        Sections visible;
        const char* expected;
        const char* stored;  // JSON
    };
    // A hidden section keeping its slot is also checked through SettingsModel's order editing.
    const std::vector<Row> rows = {
        {"no visibility keys: visible order, then missing in declaration order",
         {sensors, memory},
         "sensors,memory,cpu,storage",
         R"({"menuBarOrder": "cpu,memory,storage,sensors"})"},
        {"non-Boolean visibility counts as shown",
         {storage, sensors, cpu},
         "storage,memory,sensors,cpu",
         R"({"menuBarOrder": "cpu,memory", "showCPUItem": "no", "showMemoryItem": false})"},
        {"no stored order uses the default order", {cpu}, "cpu,memory,storage,sensors", "{}"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(SettingValue::parse(row.stored));
        MeterSettings::setMenuBarOrder(settings, row.visible);
        EXPECT_EQ(settings.string("menuBarOrder"), row.expected);
    }
}

TEST(MeterSettings, UnknownOrMistypedValuesFallBack) {
    struct Row {
        const char* name;
        MeterStyle style;
        MeterShape shape;
        MeterLabelStyle labelStyle;
        MemoryReadout memory;
        StorageReadout storage;
        const char* stored;  // JSON
    };
    using enum MeterStyle;
    using enum MeterShape;
    using enum MeterLabelStyle;
    const std::vector<Row> rows = {
        {"nothing stored", bars, pill, icons, MemoryReadout::off, StorageReadout::off, "{}"},
        {"known values", wave, square, letters, MemoryReadout::swap, StorageReadout::free,
         R"({"meterStyle": "wave", "meterShape": "square", "meterLabelStyle": "letters",
             "memoryReadout": "swap", "storageReadout": "free"})"},
        {"wrong case and type", bars, pill, icons, MemoryReadout::off, StorageReadout::off,
         R"({"meterStyle": "Wave", "meterShape": 1, "meterLabelStyle": true,
             "showMemoryPercent": "true"})"},
        {"legacy percent switch governs both unset readouts", bars, pill, icons,
         MemoryReadout::pressure, StorageReadout::usage,
         R"({"showMemoryPercent": true, "memoryReadout": "pressure", "storageReadout": "Free"})"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(SettingValue::parse(row.stored));
        EXPECT_EQ(MeterSettings::style(settings), row.style);
        EXPECT_EQ(MeterSettings::shape(settings), row.shape);
        EXPECT_EQ(MeterSettings::labelStyle(settings, cpu), row.labelStyle);
        EXPECT_EQ(MeterSettings::shownMemoryReadout(settings), row.memory);
        EXPECT_EQ(MeterSettings::shownStorageReadout(settings), row.storage);
    }
}

TEST(MeterSettings, MigrationCopiesLegacyAccentsOnlyIntoEmptySlots) {
    struct Row {
        const char* name;
        std::vector<std::string> expected;  // cpu, cpuFastCore, memory, storage
        const char* stored;                 // JSON
    };
    const std::vector<Row> rows = {
        {"one legacy accent, memory already chosen",
         {"amber", "amber", "teal", "amber"},
         R"({"accentChoice": "amber", "memoryAccent": "teal"})"},
        {"nothing stored", {"signal", "signal", "signal", "signal"}, "{}"},
        {"unparsable choice, own fast-core accent",
         {"signal", "custom:srgb:1.0000,0.5000,0.0000", "signal", "signal"},
         R"({"accentChoice": "chartreuse", "performanceCoreAccent": "custom:srgb:1,0.5,0"})"},
        {"any stored object counts as chosen",
         {"7", "pine", "pine", "bogus"},
         R"({"accentChoice": "pine", "cpuAccent": 7, "storageAccent": "bogus"})"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(SettingValue::parse(row.stored));
        MeterSettings::migrateAccents(settings);
        settings.set("accentChoice", "blue");
        MeterSettings::migrateAccents(settings);
        for (std::size_t i = 0; i < allMeterAccentSlots.size(); ++i) {
            EXPECT_EQ(settings.string(accentKey(allMeterAccentSlots[i])), row.expected[i]);
        }
    }
}

TEST(MeterSettings, UnparsableSlotAccentReadsAsTheLegacyAccent) {
    InMemorySettingsStore settings({{"accentChoice", "purple"},
                                    {"performanceCoreAccent", "amber"},
                                    {"cpuAccent", "custom:srgb:0.5"},
                                    {"cpuFastCoreAccent", "Blue"},
                                    {"memoryAccent", "graphite"}});
    EXPECT_EQ(MeterSettings::accent(settings, MeterAccentSlot::cpu), NamedAccent::purple);
    EXPECT_EQ(MeterSettings::accent(settings, MeterAccentSlot::cpuFastCore), NamedAccent::amber);
    EXPECT_EQ(MeterSettings::accent(settings, MeterAccentSlot::memory), NamedAccent::graphite);
}

}  // namespace
}  // namespace corvane
