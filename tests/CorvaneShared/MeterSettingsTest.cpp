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
        SettingValue stored;
        Sections visible;
        const char* expected;
    };
    const std::vector<Row> rows = {
        {"hidden storage stays third",
         {{"menuBarOrder", "cpu,memory,storage,sensors"}, {"showStorageItem", false}},
         {sensors, cpu, memory},
         "sensors,cpu,storage,memory"},
        {"no visibility keys: visible order, then missing in declaration order",
         {{"menuBarOrder", "cpu,memory,storage,sensors"}},
         {sensors, memory},
         "sensors,memory,cpu,storage"},
        {"non-Boolean visibility counts as shown",
         {{"menuBarOrder", "cpu,memory"}, {"showCPUItem", "no"}, {"showMemoryItem", false}},
         {storage, sensors, cpu},
         "storage,memory,sensors,cpu"},
        {"no stored order uses the default order",
         SettingValue::object(),
         {cpu},
         "cpu,memory,storage,sensors"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(row.stored);
        MeterSettings::setMenuBarOrder(settings, row.visible);
        EXPECT_EQ(settings.string("menuBarOrder"), row.expected);
    }
}

TEST(MeterSettings, UnknownOrMistypedValuesFallBack) {
    struct Row {
        const char* name;
        SettingValue stored;
        MeterStyle style;
        MeterShape shape;
        MeterLabelStyle labelStyle;
        MemoryReadout memory;
        StorageReadout storage;
    };
    using enum MeterStyle;
    const std::vector<Row> rows = {
        {"nothing stored", SettingValue::object(), bars, MeterShape::pill, MeterLabelStyle::icons,
         MemoryReadout::off, StorageReadout::off},
        {"known values",
         {{"meterStyle", "wave"},
          {"meterShape", "square"},
          {"meterLabelStyle", "letters"},
          {"memoryReadout", "swap"},
          {"storageReadout", "free"}},
         wave,
         MeterShape::square,
         MeterLabelStyle::letters,
         MemoryReadout::swap,
         StorageReadout::free},
        {"wrong case and type",
         {{"meterStyle", "Wave"},
          {"meterShape", 1},
          {"meterLabelStyle", true},
          {"showMemoryPercent", "true"}},
         bars,
         MeterShape::pill,
         MeterLabelStyle::icons,
         MemoryReadout::off,
         StorageReadout::off},
        {"legacy percent switch governs both unset readouts",
         {{"showMemoryPercent", true}, {"memoryReadout", "pressure"}, {"storageReadout", "Free"}},
         bars,
         MeterShape::pill,
         MeterLabelStyle::icons,
         MemoryReadout::pressure,
         StorageReadout::usage},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(row.stored);
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
        SettingValue stored;
        std::vector<std::string> expected;  // cpu, cpuFastCore, memory, storage
    };
    const std::vector<Row> rows = {
        {"one legacy accent, memory already chosen",
         {{"accentChoice", "amber"}, {"memoryAccent", "teal"}},
         {"amber", "amber", "teal", "amber"}},
        {"nothing stored", SettingValue::object(), {"signal", "signal", "signal", "signal"}},
        {"unparsable choice, own fast-core accent",
         {{"accentChoice", "chartreuse"}, {"performanceCoreAccent", "custom:srgb:1,0.5,0"}},
         {"signal", "custom:srgb:1.0000,0.5000,0.0000", "signal", "signal"}},
        {"any stored object counts as chosen",
         {{"accentChoice", "pine"}, {"cpuAccent", 7}, {"storageAccent", "bogus"}},
         {"7", "pine", "pine", "bogus"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(row.stored);
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
