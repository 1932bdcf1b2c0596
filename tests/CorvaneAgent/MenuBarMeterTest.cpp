#include "CorvaneAgent/MenuBarMeter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <map>

#include "CorvaneShared/MeterTexts.h"

namespace corvane {
namespace {

using enum MonitorSection;

class FakeReadings final : public MenuBarReadings {
public:
    double cpuUsage() const override { return cpu; }
    const std::vector<double>& coreUsages() const override { return cores; }
    int performanceCoreCount() const override {
        return static_cast<int>(std::count(fast.begin(), fast.end(), true));
    }
    const std::vector<bool>& performanceCores() const override { return fast; }
    const std::vector<double>& cpuHistory() const override { return history; }
    std::optional<double> cpuTemperature() const override { return cpuCelsius; }
    std::optional<double> gpuTemperature() const override { return gpuCelsius; }
    std::uint64_t swapUsed() const override { return swap; }
    std::int64_t availableStorage() const override { return available; }
    std::optional<double> cpuWatts() const override { return cpuPower; }
    std::optional<double> systemWatts() const override { return systemPower; }
    std::optional<double> hottestCelsius() const override { return hottest; }
    std::optional<double> fastestFanRPM() const override { return fan; }
    double memoryUsage() const override { return memory; }
    double memoryPressure() const override { return pressure; }
    double storageUsage() const override { return storage; }

    double cpu = 0.5;
    std::vector<double> cores = {0.3, 0.6, 0.9, 0.1};
    std::vector<bool> fast = {false, false, true, true};
    std::vector<double> history = std::vector<double>(36, 0.5);
    std::optional<double> cpuCelsius = 52.2;
    std::optional<double> gpuCelsius = 47.0;
    std::uint64_t swap = 1'234'000'000;
    std::int64_t available = 212'000'000'000;
    std::optional<double> cpuPower = 7.2;
    std::optional<double> systemPower = 20.4;
    std::optional<double> hottest = 61.0;
    std::optional<double> fan = 1850.2;
    double memory = 0.631;
    double pressure = 0.2;
    double storage = 0.58;
};

class FakeSymbols final : public SymbolCatalog {
public:
    std::optional<SymbolSize> imageSize(std::string_view) const override {
        return SymbolSize{14, 14};
    }
};

class MenuBarMeterTest : public ::testing::Test {
protected:
    MeterSources sources() {
        return {
            .layout = {settings, symbols, [this] { return cores; }},
            .units = {settings, [] { return std::string("en"); },
                      [](std::string_view key) { return std::string(key); },
                      [](const char*) -> const char* { return nullptr; }},
            .palette = [this] { return palette; },
        };
    }
    MeterContent content(MonitorSection section, bool withReadings = true) {
        return meterContent(section, withReadings ? &readings : nullptr, sources());
    }
    std::string signature(MonitorSection section) {
        return drawSignature(section, &readings, sources());
    }
    /// Replaces every stored setting with `values` (an object, or null for none).
    void useSettings(const SettingValue& values) {
        const SettingValue stored = settings.storedValues();
        for (const auto& [key, value] : stored.items()) {
            settings.remove(key);
        }
        if (values.is_object()) {
            for (const auto& [key, value] : values.items()) {
                settings.set(key, value);
            }
        }
    }

    InMemorySettingsStore settings;
    FakeSymbols symbols;
    FakeReadings readings;
    int cores = 4;
    MeterPalette palette = MeterPalette::lightOnDark;
};

TEST_F(MenuBarMeterTest, EveryDrawingSettingChangesTheSignature) {
    struct Row {
        const char* name;
        MonitorSection section;
        SettingValue before;
        const char* key;
        SettingValue after;
    };
    const Row rows[] = {
        {"style wave", cpu, {}, "meterStyle", "wave"},
        {"style compact", cpu, {}, "meterStyle", "compact"},
        {"shape", memory, {}, "meterShape", "square"},
        {"label style", storage, {}, "meterLabelStyle", "letters"},
        {"cpu readout", cpu, {}, "cpuReadout", "usage"},
        {"cpu readout off", cpu, {}, "cpuReadout", "off"},
        {"cpu accent", cpu, {}, "cpuAccent", "amber"},
        {"fast-core accent", cpu, {}, "cpuFastCoreAccent", "custom:srgb:0.1,0.2,0.3"},
        {"temperature unit", cpu, {}, "temperatureUnit", "fahrenheit"},
        {"memory readout", memory, {{"memoryReadout", "usage"}}, "memoryReadout", "swap"},
        {"legacy percent switch", memory, {}, "showMemoryPercent", true},
        {"memory accent", memory, {}, "memoryAccent", "blue"},
        {"storage readout", storage, {}, "storageReadout", "free"},
        {"storage accent", storage, {}, "storageAccent", "pine"},
        {"sensors readout", sensors, {}, "sensorsReadout", "fan"},
        {"sensors letters follow the readout",
         sensors,
         {{"meterLabelStyle", "letters"}, {"sensorsReadout", "gpu"}},
         "sensorsReadout",
         "hottest"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        useSettings(row.before);
        const std::string before = signature(row.section);
        settings.set(row.key, row.after);
        EXPECT_NE(signature(row.section), before);
    }
    useSettings(nullptr);
    const std::string dark = signature(cpu);
    palette = MeterPalette::darkOnLight;
    EXPECT_NE(signature(cpu), dark);
}

TEST_F(MenuBarMeterTest, OnlyVisibleReadingChangesChangeTheSignature) {
    using Change = std::function<void(FakeReadings&, bool visible)>;
    struct Row {
        const char* name;
        MonitorSection section;
        SettingValue settings;
        Change change;
    };
    const Row rows[] = {
        {"compact bar",
         cpu,
         {{"meterStyle", "compact"}, {"cpuReadout", "off"}},
         [](FakeReadings& r, bool visible) { r.cpu = visible ? 0.52 : 0.504; }},
        {"one core's bar",
         cpu,
         {{"cpuReadout", "off"}},
         [](FakeReadings& r, bool visible) { r.cores[0] = visible ? 0.35 : 0.31; }},
        {"wave history",
         cpu,
         {{"meterStyle", "wave"}, {"cpuReadout", "off"}},
         [](FakeReadings& r, bool visible) { r.history[20] = visible ? 0.55 : 0.505; }},
        {"temperature readout",
         cpu,
         {},
         [](FakeReadings& r, bool visible) { r.cpuCelsius = visible ? 52.6 : 52.4; }},
        {"memory fill and percentage",
         memory,
         {{"memoryReadout", "usage"}},
         [](FakeReadings& r, bool visible) { r.memory = visible ? 0.641 : 0.633; }},
        {"swap text",
         memory,
         {{"memoryReadout", "swap"}},
         [](FakeReadings& r, bool visible) { r.swap = visible ? 1'260'000'000 : 1'236'000'000; }},
        {"fan speed",
         sensors,
         {{"sensorsReadout", "fan"}},
         [](FakeReadings& r, bool visible) { r.fan = visible ? 1851.0 : 1850.4; }},
        {"power",
         sensors,
         {},
         [](FakeReadings& r, bool visible) { r.systemPower = visible ? 20.6 : 20.44; }},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        useSettings(row.settings);
        readings = FakeReadings();
        const std::string before = signature(row.section);
        row.change(readings, false);
        EXPECT_EQ(signature(row.section), before);
        row.change(readings, true);
        EXPECT_NE(signature(row.section), before);
    }
}

TEST_F(MenuBarMeterTest, AbsentReadingsShowAsUnavailableNeverAsZero) {
    const std::string dash(MeterTexts::unavailable);
    readings.cpuCelsius.reset();
    readings.fan.reset();
    readings.systemPower.reset();
    readings.cpuPower.reset();
    readings.gpuCelsius = std::numeric_limits<double>::quiet_NaN();
    struct Row {
        const char* name;
        MonitorSection section;
        SettingValue settings;
        bool withReadings;
    };
    const Row rows[] = {
        {"cpu temperature", cpu, {{"cpuReadout", "temperature"}}, true},
        {"cpu power", cpu, {{"cpuReadout", "power"}}, true},
        {"fan", sensors, {{"sensorsReadout", "fan"}}, true},
        {"power, neither system nor cpu", sensors, {{"sensorsReadout", "power"}}, true},
        {"a NaN temperature", sensors, {{"sensorsReadout", "gpu"}}, true},
        {"the model is gone", memory, {{"memoryReadout", "usage"}}, false},
        {"the model is gone, storage", storage, {{"storageReadout", "free"}}, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        useSettings(row.settings);
        const MeterContent drawn = content(row.section, row.withReadings);
        EXPECT_EQ(drawn.text, dash);
        if (!row.withReadings) {
            EXPECT_EQ(drawn.levels, std::vector<std::uint8_t>{0});
        }
    }
}

TEST_F(MenuBarMeterTest, ReadoutTexts) {
    struct Row {
        const char* name;
        MonitorSection section;
        SettingValue settings;
        const char* text;
    };
    const Row rows[] = {
        {"cpu usage", cpu, {{"cpuReadout", "usage"}}, "50%"},
        {"cpu temperature in Fahrenheit", cpu, {{"temperatureUnit", "fahrenheit"}}, "126°"},
        {"cpu power", cpu, {{"cpuReadout", "power"}}, "7.2W"},
        {"memory pressure", memory, {{"memoryReadout", "pressure"}}, "20%"},
        {"memory with the legacy percent switch", memory, {{"showMemoryPercent", true}}, "63%"},
        {"memory off", memory, {{"memoryReadout", "off"}}, ""},
        {"swap", memory, {{"memoryReadout", "swap"}}, "1.2GB"},
        {"free space", storage, {{"storageReadout", "free"}}, "212GB"},
        {"storage usage", storage, {{"storageReadout", "usage"}}, "58%"},
        {"sensors power prefers the whole system", sensors, {}, "20W"},
        {"hottest", sensors, {{"sensorsReadout", "hottest"}}, "61°"},
        {"gpu", sensors, {{"sensorsReadout", "gpu"}}, "47°"},
        {"fan", sensors, {{"sensorsReadout", "fan"}}, "1850"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        useSettings(row.settings);
        EXPECT_EQ(content(row.section).text, row.text);
    }
    // Most PCs measure only the processor package.
    readings.systemPower.reset();
    useSettings(nullptr);
    EXPECT_EQ(content(sensors).text, "7.2W");
}

TEST_F(MenuBarMeterTest, OneBarPerCoreWithTheFastTierInItsOwnAccent) {
    settings.set("cpuFastCoreAccent", "amber");
    cores = 6;  // two cores not read yet
    MeterContent drawn = content(cpu);
    EXPECT_EQ(drawn.graph, MeterGraph::bars);
    EXPECT_EQ(drawn.levels, (std::vector<std::uint8_t>{7, 14, 22, 2, 0, 0}));
    EXPECT_EQ(drawn.fastCores, (std::vector<bool>{false, false, true, true, false, false}));
    EXPECT_EQ(drawn.fastAccent, MeterAccent(NamedAccent::amber).color());

    cores = 0;
    EXPECT_EQ(content(cpu).levels.size(), 1u);
    cores = 256;
    readings.cores = std::vector<double>(256, 2.5);
    drawn = content(cpu);
    EXPECT_EQ(drawn.levels, std::vector<std::uint8_t>(256, 24));
}

TEST_F(MenuBarMeterTest, ExtremeReadingsNeitherCrashNorWidenTheMeter) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    settings.set("cpuReadout", "power");
    settings.set("memoryReadout", "swap");
    settings.set("storageReadout", "free");
    std::map<MonitorSection, MeterColumns> widths;
    for (MonitorSection section : allMonitorSections) {
        widths[section] = content(section).columns;
    }
    readings.cpu = nan;
    readings.cores = {nan, -1, 1e300};
    readings.cpuPower = 1e300;
    readings.memory = -4;
    readings.swap = std::numeric_limits<std::uint64_t>::max();
    readings.available = -1;
    readings.storage = std::numeric_limits<double>::infinity();
    readings.systemPower = -3;
    readings.cpuPower = nan;
    for (MonitorSection section : allMonitorSections) {
        SCOPED_TRACE(sectionKey(section));
        const MeterContent drawn = content(section);
        EXPECT_EQ(drawn.columns, widths[section]);
        for (std::uint8_t level : drawn.levels) {
            EXPECT_LE(level, fullLevel(drawn.graph));
        }
    }
    EXPECT_EQ(content(storage).text, MeterTexts::unavailable);
    EXPECT_EQ(content(storage).levels, std::vector<std::uint8_t>{26});
    EXPECT_EQ(content(memory).levels, std::vector<std::uint8_t>{0});
    EXPECT_EQ(content(sensors).text, MeterTexts::unavailable);
}

}  // namespace
}  // namespace corvane
