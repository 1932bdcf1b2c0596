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

TEST(MeterLayout, ItemWidthsFollowTheSettings) {
    struct Row {
        const char* name;
        MonitorSection section;
        int cores;
        double width;
        const char* settings;  // JSON
    };
    // Bars for 8 cores: 7 gaps + 8 × 4.9 + 4 = 50.2. Symbols: L = 14 or 16, G = 5;
    // letters: L = 6, G = 3.
    const Row rows[] = {
        {"cpu, nothing stored: bars and a temperature column", cpu, 8, 50.2 + 15 + 5 + (27 + 5) + 1,
         "{}"},
        {"cpu with letters", cpu, 8, 50.2 + 7 + 3 + (27 + 3) + 1,
         R"({"meterLabelStyle": "letters"})"},
        {"cpu usage on one core", cpu, 1, 8.9 + 15 + 5 + 38 + 1, R"({"cpuReadout": "usage"})"},
        {"no cores count as one", cpu, 0, 8.9 + 15 + 5 + 38 + 1, R"({"cpuReadout": "power"})"},
        {"256 cores", cpu, 256, 255 + 4.9 * 256 + 4 + 15 + 5 + 1, R"({"cpuReadout": "off"})"},
        {"wave without readout", cpu, 8, 46 + 15 + 5 + 1,
         R"({"meterStyle": "wave", "cpuReadout": "off"})"},
        {"compact with power", cpu, 8, 46 + 15 + 5 + 38 + 1,
         R"({"meterStyle": "compact", "cpuReadout": "power"})"},
        {"an unknown style draws bars", cpu, 2, 1 + 9.8 + 4 + 15 + 5 + 32 + 1,
         R"({"meterStyle": "sparkline"})"},
        {"an unknown readout is not set", cpu, 1, 8.9 + 15 + 5 + 32 + 1,
         R"({"cpuReadout": "Usage"})"},
        {"memory swap", memory, 8, 30.4 + 30 + 5 + 1, R"({"memoryReadout": "swap"})"},
        {"memory pressure", memory, 8, 30.4 + 33 + 5 + 1, R"({"memoryReadout": "pressure"})"},
        {"memory not set, legacy percent on: as wide as usage", memory, 8, 30.4 + 33 + 5 + 1,
         R"({"showMemoryPercent": true})"},
        {"memory not set, legacy percent not a Boolean: bar only", memory, 8, 30.4 + 1,
         R"({"showMemoryPercent": "yes"})"},
        {"memory off beats the legacy switch", memory, 8, 30.4 + 1,
         R"({"memoryReadout": "off", "showMemoryPercent": true})"},
        {"storage free with letters", storage, 8, 18.4 + 30 + 3 + 1,
         R"({"storageReadout": "free", "meterLabelStyle": "letters"})"},
        {"storage follows the memory legacy switch", storage, 8, 30.4 + 33 + 5 + 1,
         R"({"showMemoryPercent": true})"},
        {"sensors, nothing stored: power", sensors, 8, 15 + 33 + 5 + 1, "{}"},
        {"sensors fan", sensors, 8, 15 + 29 + 5 + 1, R"({"sensorsReadout": "fan"})"},
        {"sensors off", sensors, 8, 15 + 1, R"({"sensorsReadout": "off"})"},
        {"sensors letters keep the symbol", sensors, 8, 7 + 3 + 14 + 27 + 3 + 1,
         R"({"sensorsReadout": "hottest", "meterLabelStyle": "letters"})"},
    };
    FakeSymbols symbols;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        InMemorySettingsStore settings(SettingValue::parse(row.settings));
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
