#include "CorvaneShared/UI/StatusMetricView.h"

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QImage>

#include <cmath>
#include <cstdlib>
#include <set>

#include "CorvaneShared/UI/SvgSymbols.h"

namespace corvane {
namespace {

constexpr double ratios[] = {1, 1.25, 1.5, 2};

int pixels(double points, double ratio) {
    return static_cast<int>(std::lround(points * ratio));
}

MeterContent memoryContent(int level) {
    MeterContent content;
    content.section = MonitorSection::memory;
    content.shape = MeterShape::square;
    content.columns = {.labelWidth = 16, .graphX = 22, .graphWidth = 8.4, .width = 31.4};
    content.graph = MeterGraph::fill;
    content.levels = {static_cast<std::uint8_t>(level)};
    content.accent = MeterAccent(NamedAccent::blue).color();
    return content;
}

MeterContent barsContent(int cores) {
    MeterContent content;
    content.columns.graphX = 3;
    content.columns.graphWidth = (cores - 1) * MeterLayout::barGap + MeterLayout::barWidth * cores +
                                 2 * MeterLayout::graphInset;
    content.columns.width = content.columns.graphX + content.columns.graphWidth + 1;
    content.graph = MeterGraph::bars;
    content.levels.assign(static_cast<std::size_t>(cores), 24);
    content.fastCores.assign(static_cast<std::size_t>(cores), false);
    content.accent = {1, 0, 0, 1};
    return content;
}

TEST(StatusMetricView, ImageIsTheItemAtTheRatio) {
    MeterContent content = memoryContent(0);
    content.columns.width = 79.3;
    for (double ratio : ratios) {
        SCOPED_TRACE(ratio);
        const QImage image = StatusMetricView::render(content, ratio);
        EXPECT_EQ(image.width(), static_cast<int>(std::ceil(79.3 * ratio)));
        EXPECT_EQ(image.height(), static_cast<int>(std::ceil(22 * ratio)));
        EXPECT_EQ(image.devicePixelRatio(), ratio);
    }
}

// A blurred edge leaves part of the line's colour in the pixel beside it, and takes part of it
// from the line's own pixels. Antialiasing the rounded corners costs the straight edges a trace
// at fractional ratios, far below what can be seen (a blur is a third or more).
constexpr int invisibleAlpha = 5;
constexpr double lineAlphaTolerance = 0.02;

TEST(StatusMetricView, OutlineEdgesFallBetweenPixels) {
    const MeterContent content = memoryContent(0);
    for (double ratio : ratios) {
        SCOPED_TRACE(ratio);
        const QImage image = StatusMetricView::render(content, ratio);
        const int left = pixels(22, ratio);
        const int top = pixels(3, ratio);
        const int middleRow = pixels(11, ratio);
        const int stroke = std::max(1, pixels(MeterLayout::frameLineWidth, ratio));
        EXPECT_LE(image.pixelColor(left - 1, middleRow).alpha(), invisibleAlpha);
        for (int x = left; x < left + stroke; ++x) {
            const QColor line = image.pixelColor(x, middleRow);
            EXPECT_NEAR(line.alphaF(), MeterLayout::frameColor.alpha, lineAlphaTolerance);
            EXPECT_NEAR(line.redF(), MeterLayout::frameColor.red, lineAlphaTolerance);
        }
        EXPECT_LE(image.pixelColor(left + stroke, middleRow).alpha(), invisibleAlpha);
        const int middleColumn = pixels(26.2, ratio);
        EXPECT_LE(image.pixelColor(middleColumn, top - 1).alpha(), invisibleAlpha);
        EXPECT_NEAR(image.pixelColor(middleColumn, top).alphaF(), MeterLayout::frameColor.alpha,
                    lineAlphaTolerance);
    }
}

TEST(StatusMetricView, FillEndsOnAWholePixel) {
    for (double ratio : ratios) {
        for (int level : {3, 7, 13, 24}) {
            SCOPED_TRACE(testing::Message() << ratio << " level " << level);
            // A bar wider than the meter's, so that its middle is clear of the fill's corners.
            MeterContent content = memoryContent(level);
            content.columns.graphWidth = 20;
            content.columns.width = 43;
            const QImage image = StatusMetricView::render(content, ratio);
            // Down the middle of the fill: track above, accent below, nothing in between.
            const int column = pixels(32, ratio);
            std::set<QRgb> colors;
            const int inset = pixels(MeterLayout::fillBarInset, ratio);
            for (int y = pixels(3, ratio) + inset; y < pixels(19, ratio) - inset; ++y) {
                colors.insert(image.pixel(column, y));
            }
            EXPECT_EQ(colors.size(), 2u);
        }
    }
}

TEST(StatusMetricView, EveryCoreGetsItsOwnBarAtEveryRatio) {
    for (int cores : {1, 8, 64, 256}) {
        for (double ratio : ratios) {
            SCOPED_TRACE(testing::Message() << cores << " cores at " << ratio);
            const QImage image = StatusMetricView::render(barsContent(cores), ratio);
            // Along a row through the middle of the bars: one run of red per core, none
            // outside the graph.
            const int row = pixels(11, ratio);
            int runs = 0;
            bool inRun = false;
            int firstRed = image.width();
            int lastRed = -1;
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, row);
                const bool red = color.alpha() == 255 && color.red() == 255 && color.green() == 0;
                if (red) {
                    firstRed = std::min(firstRed, x);
                    lastRed = x;
                }
                runs += red && !inRun;
                inRun = red;
            }
            EXPECT_EQ(runs, cores);
            EXPECT_GE(firstRed, pixels(5, ratio));
            EXPECT_LT(lastRed, pixels(barsContent(cores).columns.width - 3, ratio));
        }
    }
}

TEST(StatusMetricView, ATooLongReadoutStaysInItsColumn) {
    MeterContent content;
    content.section = MonitorSection::sensors;
    content.columns = {.labelWidth = 14, .textX = 20, .textWidth = 33, .width = 54};
    content.text = "100000000000000000000000000000W";
    for (double ratio : ratios) {
        SCOPED_TRACE(ratio);
        const QImage image = StatusMetricView::render(content, ratio);
        bool inked = false;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const bool ink = image.pixelColor(x, y).alpha() > 0;
                inked = inked || ink;
                if (ink) {
                    ASSERT_GE(x, pixels(20, ratio) - 1) << "at " << x << "," << y;
                    ASSERT_LT(x, pixels(53, ratio) + 1) << "at " << x << "," << y;
                }
            }
        }
        EXPECT_TRUE(inked);
    }
}

TEST(StatusMetricView, ForegroundFollowsThePalette) {
    MeterContent content;
    content.section = MonitorSection::sensors;
    content.columns = {.labelWidth = 14, .width = 16};
    content.symbol = "sensor";
    for (MeterPalette palette : {MeterPalette::lightOnDark, MeterPalette::darkOnLight}) {
        content.palette = palette;
        const QImage image = StatusMetricView::render(content, 2);
        QColor strongest(Qt::transparent);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixelColor(x, y).alpha() > strongest.alpha()) {
                    strongest = image.pixelColor(x, y);
                }
            }
        }
        EXPECT_EQ(strongest.rgb(), meterColors(palette).foreground.rgb());
        EXPECT_GT(strongest.alpha(), 200);
    }
}

TEST(SvgSymbols, EveryNamedSymbolIsThereAndTinted) {
    const QStringList names = QStringLiteral(
                                  "cpu memorychip internaldrive sensor gearshape terminal fan bolt "
                                  "bolt.horizontal battery.100 heart arrow.triangle.2.circlepath "
                                  "powerplug clock cube.transparent thermometer "
                                  "thermometer.medium wind")
                                  .split(' ');
    const QColor tint(20, 200, 120);
    for (const QString& each : names) {
        const std::string name = each.toStdString();
        SCOPED_TRACE(name);
        const auto size = SvgSymbols::shared().imageSize(name);
        ASSERT_TRUE(size);
        EXPECT_GE(size->width, 12);
        EXPECT_LE(size->width, 20);
        EXPECT_EQ(size->height, 14);
        const QImage image = SvgSymbols::shared().image(name, tint, 2);
        EXPECT_EQ(image.width(), static_cast<int>(size->width * 2));
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                if (color.alpha() == 255) {
                    ++inked;
                    EXPECT_EQ(color.rgb(), tint.rgb());
                }
            }
        }
        EXPECT_GT(inked, 20);
    }
    EXPECT_FALSE(SvgSymbols::shared().imageSize("no.such.symbol"));
    EXPECT_FALSE(SvgSymbols::shared().imageSize("../symbols/cpu"));
    EXPECT_TRUE(SvgSymbols::shared().image("no.such.symbol", tint, 1).isNull());
}

}  // namespace
}  // namespace corvane

int main(int argc, char** argv) {
    // The meters are drawn without a display, as the render command draws them.
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
