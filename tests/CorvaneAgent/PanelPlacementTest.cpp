#include "CorvaneAgent/PanelPlacement.h"

#include <gtest/gtest.h>

namespace corvane {
namespace {

// A 1920×1080 screen with a 24-point strip at the top, and a 1280×1024 screen to its right
// whose work area leaves out a 40-point panel at the bottom.
const ScreenArea left{{0, 0, 1920, 1080}, {0, 24, 1920, 1056}};
const ScreenArea right{{1920, 0, 1280, 1024}, {1920, 0, 1280, 984}};

TEST(PanelPlacement, HangsBelowTheItemAndStaysOnItsScreen) {
    struct Row {
        const char* name;
        ScreenRect anchor;
        std::vector<ScreenArea> screens;
        double height;
        ScreenPoint origin;
    };
    const Row rows[] = {
        {"centred below", {900, 0, 40, 24}, {left, right}, 500, {770, 24}},
        {"near the right edge", {1880, 0, 36, 24}, {left, right}, 500, {1620, 24}},
        {"near the left edge", {4, 0, 36, 24}, {left, right}, 500, {0, 24}},
        {"anchor on the second screen", {3150, 0, 40, 24}, {left, right}, 500, {2900, 24}},
        {"second screen's left edge", {1925, 0, 30, 24}, {left, right}, 500, {1920, 24}},
        {"bar at the bottom opens upwards", {2500, 984, 30, 40}, {left, right}, 600, {2365, 384}},
        {"no room below or above", {900, 500, 40, 24}, {left, right}, 700, {770, 380}},
        {"taller than the screen", {900, 0, 40, 24}, {left, right}, 2000, {770, 24}},
        {"anchor off every screen", {-300, 0, 40, 24}, {left, right}, 500, {0, 24}},
        {"no screens", {900, 0, 40, 24}, {}, 500, {770, 24}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(panelOrigin(row.anchor, row.screens, 300, row.height), row.origin);
    }
}

}  // namespace
}  // namespace corvane
