#include "CorvaneAgent/UI/PanelWindow.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QWidget>

namespace corvane {
namespace {

// Stands in for a panel: as tall as the row says at the panel's width, and wider elsewhere.
class FixedPanel final : public QWidget {
public:
    explicit FixedPanel(int height) : height(height) {}
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return width == 300 ? height : height * 2; }

private:
    int height;
};

struct Built {
    PanelMetrics metrics;
    std::optional<double> scroll;
};

TEST(PanelWindow, ShowsBelowItsAnchorAndReportsEveryWayOfClosing) {
    std::vector<Built> built;
    PanelWindow panel("Sensors", [&](const PanelMetrics& metrics, std::optional<double> scroll) {
        built.push_back({metrics, scroll});
        return new FixedPanel(420);
    });
    int closes = 0;
    const Subscription subscription = panel.observeDidClose([&] {
        EXPECT_FALSE(panel.isShown());
        ++closes;
    });
    EXPECT_FALSE(panel.hasContent());

    panel.setContent(PanelMetrics::steps[1], 126);
    ASSERT_EQ(built.size(), 1u);
    EXPECT_EQ(built[0].metrics, PanelMetrics::steps[1]);
    EXPECT_EQ(built[0].scroll, 126);
    EXPECT_EQ(panel.fittingHeight(), 420);

    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    const ScreenRect anchor{screen.right() - 30.0, screen.top() + 0.0, 24, 24};
    panel.show(anchor);
    ASSERT_TRUE(panel.isShown());
    // Near the right edge: moved left so that it ends at the screen's edge.
    EXPECT_EQ(panel.windowFrame(),
              (ScreenRect{screen.right() + 1.0 - 300, anchor.y + 24, 300, 420}));
    EXPECT_EQ(panel.window().windowTitle(), "Sensors");
    EXPECT_TRUE(panel.window().windowFlags().testFlags(Qt::FramelessWindowHint |
                                                       Qt::WindowStaysOnTopHint | Qt::Tool));

    panel.close();
    EXPECT_FALSE(panel.windowFrame());
    panel.close();
    EXPECT_EQ(closes, 1);

    panel.show(anchor);
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&panel.window(), &escape);
    EXPECT_EQ(closes, 2);

    panel.show(anchor);
    panel.window().close();  // as the window manager would
    EXPECT_EQ(closes, 3);

    panel.refreshAppearance();
    ASSERT_EQ(built.size(), 2u);
    EXPECT_EQ(built[1].metrics, PanelMetrics::steps[1]);
    EXPECT_EQ(built[1].scroll, 126);
    panel.removeContent();
    EXPECT_FALSE(panel.hasContent());
    EXPECT_EQ(panel.fittingHeight(), 0);
}

// The controller may drop a popover from its did-close handler; the window's close event is
// still running then.
TEST(PanelWindow, SurvivesBeingDestroyedByItsDidCloseHandler) {
    auto panel = std::make_unique<PanelWindow>(
        "CPU", [](const PanelMetrics&, std::optional<double>) { return new FixedPanel(200); });
    panel->setContent(PanelMetrics::steps[0], std::nullopt);
    const Subscription subscription = panel->observeDidClose([&] { panel.reset(); });
    panel->show({10, 0, 24, 24});
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&panel->window(), &escape);
    EXPECT_EQ(panel, nullptr);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

}  // namespace
}  // namespace corvane
