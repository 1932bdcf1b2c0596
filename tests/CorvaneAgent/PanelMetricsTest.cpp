#include "CorvaneAgent/PanelMetrics.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>

namespace corvane {
namespace {

// A panel whose height at each step is given by the row; counts how often it is measured.
struct FakePanel {
    std::array<double, 4> heights;
    int measured = 0;

    PanelFit::Measure measure() {
        return [this](const PanelMetrics& metrics) {
            ++measured;
            for (std::size_t step = 0; step < PanelMetrics::steps.size(); ++step) {
                if (PanelMetrics::steps[step] == metrics) {
                    return heights[step];
                }
            }
            ADD_FAILURE() << "measured with metrics that are no step";
            return 0.0;
        };
    }
};

TEST(PanelFit, ChoosesFirstStepThatFitsElseScrollsAtLastStep) {
    struct Row {
        const char* name;
        double budget;
        std::array<double, 4> heights;
        std::size_t step;
        std::optional<double> scroll;
    };
    const Row rows[] = {
        {"unbounded budget", 100000, {640, 600, 560, 520}, 0, std::nullopt},
        {"taller than 200 at every step", 200, {640, 600, 560, 520}, 3, 126},
        {"negative budget passed on", -5, {640, 600, 560, 520}, 3, -79},
        {"exact fit counts", 560, {640, 600, 560, 520}, 2, std::nullopt},
        {"only the densest fits", 530, {640, 600, 560, 520}, 3, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        FakePanel panel{row.heights};
        PanelFit fit;
        const PanelFitRecord& record =
            fit.fit(MonitorSection::sensors, row.budget, panel.measure());
        EXPECT_EQ(record.budget, row.budget);
        EXPECT_EQ(record.metrics, PanelMetrics::steps[row.step]);
        EXPECT_EQ(record.scroll, row.scroll);
        EXPECT_EQ(panel.measured, static_cast<int>(std::min<std::size_t>(row.step + 1, 4)));
    }
}

TEST(PanelFit, SameBudgetReusesStoredFitWithoutMeasuring) {
    FakePanel panel{{500, 450, 400, 350}};
    PanelFit fit;
    fit.fit(MonitorSection::cpu, 460, panel.measure());
    ASSERT_EQ(panel.measured, 2);

    // The content grew (more processes, more sensors): the budget alone decides.
    panel.heights = {900, 900, 900, 900};
    const PanelFitRecord& reused = fit.fit(MonitorSection::cpu, 460, panel.measure());
    EXPECT_EQ(panel.measured, 2);
    EXPECT_EQ(reused.metrics, PanelMetrics::steps[1]);
    EXPECT_FALSE(reused.scroll);

    // Another section has its own record; a new budget measures again.
    EXPECT_EQ(fit.stored(MonitorSection::memory), nullptr);
    const PanelFitRecord& refit = fit.fit(MonitorSection::cpu, 461, panel.measure());
    EXPECT_EQ(panel.measured, 6);
    EXPECT_EQ(refit.scroll, 461 - 74);
    EXPECT_EQ(fit.stored(MonitorSection::cpu)->budget, 461);
}

TEST(PanelBudget, VariableThenItemScreenThenPrimaryScreenThenUnbounded) {
    struct Row {
        const char* name;
        std::optional<std::string> variable;
        std::optional<double> itemScreen;
        std::optional<double> primaryScreen;
        double expected;
    };
    const double unbounded = std::numeric_limits<double>::max();
    const Row rows[] = {
        {"variable taken as it is", "200", 1000, 900, 200},
        {"negative variable", "-5", 1000, 900, -5},
        {"fractional variable", "412.5", std::nullopt, std::nullopt, 412.5},
        {"unparsable variable falls back to the screen", "200px", 1000, 900, 970},
        {"empty variable", "", 1000, 900, 970},
        {"blank around the number", " 200", 1000, 900, 970},
        {"non-finite variable", "inf", 1000, 900, 970},
        {"item without a screen takes the primary", std::nullopt, std::nullopt, 900, 870},
        {"no screens at all", std::nullopt, std::nullopt, std::nullopt, unbounded},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        const PanelBudgetSources sources{
            .environment = [&](const char* name) -> std::optional<std::string> {
                EXPECT_STREQ(name, "CORVANE_PANEL_BUDGET");
                return row.variable;
            },
            .itemScreenHeight = [&](MonitorSection) { return row.itemScreen; },
            .primaryScreenHeight = [&] { return row.primaryScreen; },
        };
        EXPECT_EQ(availableHeight(MonitorSection::storage, sources), row.expected);
    }
}

}  // namespace
}  // namespace corvane
