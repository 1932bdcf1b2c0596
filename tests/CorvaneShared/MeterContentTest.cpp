#include "CorvaneShared/MeterContent.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <set>

#include "CorvaneShared/MeterTexts.h"

namespace corvane {
namespace {

MeterContent barsContent() {
    MeterContent content;
    content.section = MonitorSection::cpu;
    content.columns = {.labelWidth = 14,
                       .graphX = 20,
                       .graphWidth = 26.6,
                       .textX = 51,
                       .textWidth = 27,
                       .width = 79};
    content.symbol = "cpu";
    content.graph = MeterGraph::bars;
    content.levels = {0, 12, 24, 3};
    content.fastCores = {false, false, true, true};
    content.accent = MeterAccent(NamedAccent::signal).color();
    content.fastAccent = MeterAccent(NamedAccent::indigo).color();
    content.text = "52°";
    return content;
}

TEST(MeterContent, EveryDrawnDifferenceChangesTheSignature) {
    using Change = std::function<void(MeterContent&)>;
    const std::pair<const char*, Change> changes[] = {
        {"section", [](MeterContent& c) { c.section = MonitorSection::memory; }},
        {"palette", [](MeterContent& c) { c.palette = MeterPalette::darkOnLight; }},
        {"shape", [](MeterContent& c) { c.shape = MeterShape::square; }},
        {"letters", [](MeterContent& c) { c.letters = "CPU"; }},
        {"symbol", [](MeterContent& c) { c.symbol = {}; }},
        {"graph style", [](MeterContent& c) { c.graph = MeterGraph::wave; }},
        {"one bar's level", [](MeterContent& c) { c.levels[1] = 13; }},
        {"a bar more",
         [](MeterContent& c) { c.levels.push_back(0), c.fastCores.push_back(false); }},
        {"which bar is fast",
         [](MeterContent& c) {
             c.fastCores = {true, false, true, true};
         }},
        {"accent", [](MeterContent& c) { c.accent = MeterAccent::custom(0.2, 0.4, 0.6).color(); }},
        {"fast accent", [](MeterContent& c) { c.fastAccent = c.accent; }},
        {"readout text", [](MeterContent& c) { c.text = "53°"; }},
        {"readout template", [](MeterContent& c) { c.textTemplate = "888MB"; }},
        {"text column", [](MeterContent& c) { c.columns.textWidth = 33, c.columns.width = 85; }},
        {"label column", [](MeterContent& c) { c.columns.labelWidth = 6; }},
    };
    const MeterContent base = barsContent();
    const std::string baseSignature = drawSignature(base);
    EXPECT_EQ(drawSignature(barsContent()), baseSignature);
    std::set<std::string> seen = {baseSignature};
    for (const auto& [name, change] : changes) {
        SCOPED_TRACE(name);
        MeterContent changed = base;
        change(changed);
        ASSERT_NE(changed, base);
        // Different from the base and from every other change.
        EXPECT_TRUE(seen.insert(drawSignature(changed)).second);
    }
}

TEST(MeterContent, LevelsQuantiseToHalfPointsAndClamp) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    struct Row {
        const char* name;
        MeterGraph graph;
        double fraction;
        int level;
    };
    const Row rows[] = {
        {"bars are 12 points tall", MeterGraph::bars, 1, 24},
        {"half of a bar", MeterGraph::bars, 0.5, 12},
        {"less than a quarter point rounds down", MeterGraph::bars, 0.01, 0},
        {"a fill bar is 13 points tall", MeterGraph::fill, 1, 26},
        {"compact is 42 points long", MeterGraph::compact, 0.5, 42},
        {"NaN is empty", MeterGraph::fill, nan, 0},
        {"negative is empty", MeterGraph::wave, -3, 0},
        {"beyond full is full", MeterGraph::compact, infinity, 84},
        {"no graph", MeterGraph::none, 0.7, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(graphLevel(row.graph, row.fraction), row.level);
    }
}

TEST(MeterTexts, CompactFormsInTheDisplayLocale) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    using Format = std::optional<std::string> (*)(double, std::string_view);
    struct Row {
        const char* name;
        Format format;
        double value;
        const char* locale;
        std::optional<std::string> expected;
    };
    const Row rows[] = {
        {"watts below ten keep a decimal", &MeterTexts::watts, 4.25, "en", "4.3W"},
        {"watts from ten on are whole", &MeterTexts::watts, 12.4, "en", "12W"},
        {"9.96 W reads as ten, not 10.0", &MeterTexts::watts, 9.96, "en", "10W"},
        {"German decimal comma", &MeterTexts::watts, 4.2, "de-DE", "4,2 W"},
        {"negative watts are unreadable", &MeterTexts::watts, -1, "en", std::nullopt},
        {"NaN watts are unreadable", &MeterTexts::watts, nan, "en", std::nullopt},
        {"no bytes", &MeterTexts::bytes, 0, "en", "0kB"},
        {"bytes in decimal multiples", &MeterTexts::bytes, 1'234'000'000, "en", "1.2GB"},
        {"whole units from ten on", &MeterTexts::bytes, 212'400'000'000, "en", "212GB"},
        {"999.96 MB steps up to the next unit", &MeterTexts::bytes, 999'960'000, "en", "1.0GB"},
        {"petabytes are the largest unit", &MeterTexts::bytes, 3e18, "en", "3,000PB"},
        {"French units", &MeterTexts::bytes, 5'500'000, "fr-FR", "5,5Mo"},
        {"an invalid locale formats as English", &MeterTexts::bytes, 1'500, "??", "1.5kB"},
        {"fan speeds without grouping", &MeterTexts::revolutions, 1850.4, "en", "1850"},
        {"fan speed rounds half up", &MeterTexts::revolutions, 1850.5, "de", "1851"},
        {"negative speed is unreadable", &MeterTexts::revolutions, -5, "en", std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(row.format(row.value, row.locale), row.expected);
    }
}

}  // namespace
}  // namespace corvane
