#include "CorvaneAgent/PanelMetrics.h"

#include <charconv>
#include <limits>
#include <string_view>

namespace corvane {

const std::array<PanelMetrics, 4> PanelMetrics::steps = {{
    {70, 72, 9, 7},
    {60, 60, 8, 6},
    {50, 50, 6, 5},
    {42, 42, 5, 4},
}};

const PanelFitRecord& PanelFit::fit(MonitorSection section, double budget, const Measure& measure) {
    auto stored = records.find(section);
    if (stored != records.end() && stored->second.budget == budget) {
        return stored->second;
    }
    PanelFitRecord record{budget, PanelMetrics::steps.back(), budget - 74};
    for (const PanelMetrics& step : PanelMetrics::steps) {
        if (measure(step) <= budget) {
            record = {budget, step, std::nullopt};
            break;
        }
    }
    return records[section] = record;
}

const PanelFitRecord* PanelFit::stored(MonitorSection section) const {
    auto found = records.find(section);
    return found == records.end() ? nullptr : &found->second;
}

double availableHeight(MonitorSection section, const PanelBudgetSources& sources) {
    if (sources.environment) {
        if (std::optional<std::string> value = sources.environment("CORVANE_PANEL_BUDGET")) {
            double budget = 0;
            const char* end = value->data() + value->size();
            auto [stop, error] = std::from_chars(value->data(), end, budget);
            if (error == std::errc{} && stop == end && !value->empty()) {
                return budget;
            }
        }
    }
    std::optional<double> screen =
        sources.itemScreenHeight ? sources.itemScreenHeight(section) : std::nullopt;
    if (!screen && sources.primaryScreenHeight) {
        screen = sources.primaryScreenHeight();
    }
    return screen ? *screen - 30 : std::numeric_limits<double>::max();
}

}  // namespace corvane
