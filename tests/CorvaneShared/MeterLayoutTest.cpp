#include "CorvaneShared/MeterLayout.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace corvane {
namespace {

using enum MonitorSection;

/// Symbols of the sizes the shipped set has; an empty catalog has no images at all.
class FakeSymbols final : public SymbolCatalog {
public:
    std::optional<SymbolSize> imageSize(std::string_view name) const override {
        const auto found = sizes.find(std::string(name));
        return found == sizes.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::string, SymbolSize> sizes = {{"cpu", {14, 14}},
                                               {"memorychip", {16, 14}},
                                               {"internaldrive", {16, 14}},
                                               {"sensor", {14, 14}}};
};

struct WidthRow {
    const char* name;
    SettingValue settings;
    MonitorSection section;
    int cores;
    double width;
};

TEST(MeterLayout, ItemWidthsFollowTheSettings) {
    // Bars for 8 cores: 7 gaps + 8 × 4.9 + 4 = 50.2. Symbols: L = 14 or 16, G = 5;
    // letters: L = 6, G = 3.
    const WidthRow rows[] = {
        {"cpu, nothing stored: bars and a temperature column",
         {},
         cpu,
         8,
         50.2 + 15 + 5 + (27 + 5) + 1},
        {"cpu with letters", {{"meterLabelStyle", "letters"}}, cpu, 8, 50.2 + 7 + 3 + (27 + 3) + 1},
        {"cpu usage on one core", {{"cpuReadout", "usage"}}, cpu, 1, 8.9 + 15 + 5 + 38 + 1},
        {"no cores count as one", {{"cpuReadout", "power"}}, cpu, 0, 8.9 + 15 + 5 + 38 + 1},
        {"256 cores", {{"cpuReadout", "off"}}, cpu, 256, 255 + 4.9 * 256 + 4 + 15 + 5 + 1},
        {"wave without readout",
         {{"meterStyle", "wave"}, {"cpuReadout", "off"}},
         cpu,
         8,
         46 + 15 + 5 + 1},
        {"compact with power",
         {{"meterStyle", "compact"}, {"cpuReadout", "power"}},
         cpu,
         8,
         46 + 15 + 5 + 38 + 1},
        {"an unknown style draws bars",
         {{"meterStyle", "sparkline"}},
         cpu,
         2,
         1 + 9.8 + 4 + 15 + 5 + 32 + 1},
        {"an unknown readout is not set", {{"cpuReadout", "Usage"}}, cpu, 1, 8.9 + 15 + 5 + 32 + 1},
        {"memory swap", {{"memoryReadout", "swap"}}, memory, 8, 30.4 + 30 + 5 + 1},
        {"memory pressure", {{"memoryReadout", "pressure"}}, memory, 8, 30.4 + 33 + 5 + 1},
        {"memory not set, legacy percent on: as wide as usage",
         {{"showMemoryPercent", true}},
         memory,
         8,
         30.4 + 33 + 5 + 1},
        {"memory not set, legacy percent not a Boolean: bar only",
         {{"showMemoryPercent", "yes"}},
         memory,
         8,
         30.4 + 1},
        {"memory off beats the legacy switch",
         {{"memoryReadout", "off"}, {"showMemoryPercent", true}},
         memory,
         8,
         30.4 + 1},
        {"storage free with letters",
         {{"storageReadout", "free"}, {"meterLabelStyle", "letters"}},
         storage,
         8,
         18.4 + 30 + 3 + 1},
        {"storage follows the memory legacy switch",
         {{"showMemoryPercent", true}},
         storage,
         8,
         30.4 + 33 + 5 + 1},
        {"sensors, nothing stored: power", {}, sensors, 8, 15 + 33 + 5 + 1},
        {"sensors fan", {{"sensorsReadout", "fan"}}, sensors, 8, 15 + 29 + 5 + 1},
        {"sensors off", {{"sensorsReadout", "off"}}, sensors, 8, 15 + 1},
        {"sensors letters keep the symbol",
         {{"sensorsReadout", "hottest"}, {"meterLabelStyle", "letters"}},
         sensors,
         8,
         7 + 3 + 14 + 27 + 3 + 1},
    };
    FakeSymbols symbols;
    for (const WidthRow& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(row.settings.is_null() ? SettingValue::object()
                                                              : row.settings);
        const MeterLayoutSources sources{settings, symbols, [&] { return row.cores; }};
        const MeterColumns parts = MeterLayout::columns(sources, row.section);
        EXPECT_NEAR(MeterLayout::itemWidth(sources, row.section), row.width, 1e-9);
        // Every part stands inside the item, after the label.
        EXPECT_LE(parts.labelX + parts.labelWidth, parts.width);
        for (double end : {parts.symbolX + parts.symbolWidth, parts.graphX + parts.graphWidth,
                           parts.textX + parts.textWidth}) {
            EXPECT_LE(end, parts.width - 1 + 1e-9);
        }
    }
}

TEST(MeterLayout, LabelColumnFollowsTheLabelStyle) {
    struct Row {
        const char* name;
        SettingValue style;
        bool withSymbols;
        double label;
        double gap;
    };
    const Row rows[] = {
        {"letters", "letters", true, 6, 3},
        {"icons", "icons", true, 16, 5},
        {"absent", nullptr, true, 16, 5},
        {"unknown", "Letters", true, 16, 5},
        {"a symbol without an image is 13 wide", "icons", false, 13, 5},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings;
        settings.set("meterLabelStyle", row.style);
        FakeSymbols symbols;
        if (!row.withSymbols) {
            symbols.sizes.clear();
        }
        const MeterLayoutSources sources{settings, symbols, [] { return 4; }};
        EXPECT_EQ(MeterLayout::labelWidth(sources, memory), row.label);
        EXPECT_EQ(MeterLayout::meterSideGap(sources, memory), row.gap);
    }
}

TEST(MeterLayout, SettingsApplyAtTheNextCall) {
    InMemorySettingsStore settings;
    FakeSymbols symbols;
    const MeterLayoutSources sources{settings, symbols, [] { return 4; }};
    settings.set("cpuReadout", "usage");
    EXPECT_EQ(MeterLayout::cpuReadoutWidth(sources), 38);
    settings.set("cpuReadout", "off");
    EXPECT_EQ(MeterLayout::cpuReadoutWidth(sources), 0);
    EXPECT_EQ(MeterLayout::columns(sources, cpu).textWidth, 0);
    settings.set("meterLabelStyle", "letters");
    settings.set("cpuReadout", "temperature");
    EXPECT_EQ(MeterLayout::cpuReadoutWidth(sources), 30);
}

}  // namespace
}  // namespace corvane
