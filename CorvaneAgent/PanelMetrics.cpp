#include "CorvaneAgent/PanelMetrics.h"

#include <limits>

#include "Foundation/NumberParsing.h"

namespace corvane {

const std::array<PanelMetrics, 4> PanelMetrics::steps = {{
    {70, 72, 9, 7},
    {60, 60, 8, 6},
    {50, 50, 6, 5},
    {42, 42, 5, 4},
}};

namespace {

// Room kept between the panel and the screen's edge, and the part of a scrolling panel that
// does not scroll (its header and footer), in points.
constexpr double screenMargin = 30;
constexpr double fixedPartOfScrollingPanel = 74;

}  // namespace

const PanelFitRecord& PanelFit::fit(MonitorSection section, double budget, const Measure& measure) {
    if (auto stored = records.find(section);
        stored != records.end() && stored->second.budget == budget) {
        return stored->second;
    }
    PanelFitRecord chosen{budget, PanelMetrics::steps.back(), budget - fixedPartOfScrollingPanel};
    for (const PanelMetrics& step : PanelMetrics::steps) {
        if (measure(step) <= budget) {
            chosen = {budget, step, std::nullopt};
            break;
        }
    }
    return records[section] = chosen;
}

const PanelFitRecord* PanelFit::stored(MonitorSection section) const {
    const auto found = records.find(section);
    return found == records.end() ? nullptr : &found->second;
}

double availableHeight(MonitorSection section, const PanelBudgetSources& sources) {
    if (sources.environment) {
        if (auto value = sources.environment("CORVANE_PANEL_BUDGET")) {
            if (auto budget = parseNumber<double>(*value)) {
                return *budget;
            }
        }
    }
    std::optional<double> screenHeight;
    if (sources.itemScreenHeight) {
        screenHeight = sources.itemScreenHeight(section);
    }
    if (!screenHeight && sources.primaryScreenHeight) {
        screenHeight = sources.primaryScreenHeight();
    }
    return screenHeight ? *screenHeight - screenMargin : std::numeric_limits<double>::max();
}

}  // namespace corvane
