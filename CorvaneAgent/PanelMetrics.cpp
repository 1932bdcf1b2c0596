#include "CorvaneAgent/PanelMetrics.h"

#include <limits>

#include "Foundation/NumberParsing.h"

namespace corvane {

namespace {

constexpr const char* budgetVariable = "CORVANE_PANEL_BUDGET";
/// What the screen keeps for itself below the panel, in points.
constexpr double screenMargin = 30;
/// The header, the footer and their dividers stay outside the scrolling region, in points.
constexpr double chromeHeight = 74;

}  // namespace

const std::array<PanelMetrics, 4> PanelMetrics::steps = {{
    {.usageGraphHeight = 70, .loadGraphHeight = 72, .sectionPadding = 9, .rowSpacing = 7},
    {.usageGraphHeight = 60, .loadGraphHeight = 60, .sectionPadding = 8, .rowSpacing = 6},
    {.usageGraphHeight = 50, .loadGraphHeight = 50, .sectionPadding = 6, .rowSpacing = 5},
    {.usageGraphHeight = 42, .loadGraphHeight = 42, .sectionPadding = 5, .rowSpacing = 4},
}};

const PanelFitRecord& PanelFit::fit(MonitorSection section, double budget, const Measure& measure) {
    const auto stored = records.find(section);
    // Keyed by the budget alone: content that grew since (more sensors) keeps the stored fit
    // until the budget changes, which spares measuring the panel on every opening.
    if (stored != records.end() && stored->second.budget == budget) {
        return stored->second;
    }
    PanelFitRecord record{.budget = budget, .metrics = PanelMetrics::steps.back()};
    record.scroll = budget - chromeHeight;
    for (const PanelMetrics& step : PanelMetrics::steps) {
        if (measure(step) <= budget) {
            record.metrics = step;
            record.scroll.reset();
            break;
        }
    }
    return records.insert_or_assign(section, record).first->second;
}

const PanelFitRecord* PanelFit::stored(MonitorSection section) const {
    const auto found = records.find(section);
    return found == records.end() ? nullptr : &found->second;
}

double availableHeight(MonitorSection section, const PanelBudgetSources& sources) {
    if (sources.environment) {
        if (const auto value = sources.environment(budgetVariable)) {
            // Taken as it is, negative values included: the variable exists to force a fit.
            if (const auto budget = parseNumber<double>(*value)) {
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
    if (!screenHeight) {
        return std::numeric_limits<double>::max();
    }
    return *screenHeight - screenMargin;
}

}  // namespace corvane
