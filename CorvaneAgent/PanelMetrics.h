#pragma once

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <string>

#include "CorvaneShared/MonitorSection.h"

namespace corvane {

/// How dense a detail panel is laid out, in points: the panels read these when they are built.
struct PanelMetrics {
    double usageGraphHeight = 70;
    double loadGraphHeight = 72;
    double sectionPadding = 9;
    double rowSpacing = 7;

    bool operator==(const PanelMetrics&) const = default;

    /// The four densities, largest first; a new panel starts with the first.
    static const std::array<PanelMetrics, 4> steps;
};

/// The fit chosen for one section's panel under one height budget.
struct PanelFitRecord {
    double budget = 0;
    PanelMetrics metrics;
    /// The height of the scrolling region; absent when the panel fits without scrolling.
    std::optional<double> scroll;
};

/// Chooses, per section, the densest-needed layout that lets a panel fit the height available
/// under its menu-bar item, and remembers the choice for as long as that height stays the same.
/// Free of widgets: the panel is measured through a callback. Main thread only.
class PanelFit {
public:
    /// Builds the panel with the given metrics (no scrolling) and returns the height it needs
    /// at the panel width of 300 points.
    using Measure = std::function<double(const PanelMetrics& metrics)>;

    /// The fit for `section` under `budget`: the stored one when the budget is the same as
    /// last time (nothing is measured), else the first step whose measured height is at most
    /// the budget, else the last step scrolling in `budget - 74` points. Stores the result.
    const PanelFitRecord& fit(MonitorSection section, double budget, const Measure& measure);

    /// The stored fit of `section`, if any.
    const PanelFitRecord* stored(MonitorSection section) const;

private:
    std::map<MonitorSection, PanelFitRecord> records;
};

/// Where the height budget comes from, in the order it is consulted.
struct PanelBudgetSources {
    /// The process environment's value of a variable; absent when unset.
    std::function<std::optional<std::string>(const char* name)> environment;
    /// The usable height of the screen under the section's item; absent without one.
    std::function<std::optional<double>(MonitorSection)> itemScreenHeight;
    /// The usable height of the primary screen; absent without one.
    std::function<std::optional<double>()> primaryScreenHeight;
};

/// The height a section's panel may take: "CORVANE_PANEL_BUDGET" when its whole value is a
/// decimal number (taken as it is), else the usable height of the item's screen, else of the
/// primary screen, minus 30; else unbounded (the largest finite double).
double availableHeight(MonitorSection section, const PanelBudgetSources& sources);

}  // namespace corvane
