#include "CorvaneShared/UI/MemoryCompositionBar.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

#include "CorvaneShared/UI/PopoverColors.h"

namespace corvane {

std::array<CompositionSegment, 4> compositionSegments(const std::array<double, 4>& shares,
                                                      double width) {
    double total = 0;
    for (double share : shares) {
        total += share;
    }
    // At most 1 in all: the shares are fractions of something bigger, so they fill part only.
    const double divisor = total > 1.0 ? total : 1.0;
    std::array<CompositionSegment, 4> segments{};
    double start = 0;
    for (std::size_t index = 0; index < shares.size(); ++index) {
        const double wanted = width * shares[index] / divisor;
        const double segment = std::max(0.0, std::min(wanted, width - start));
        segments[index] = {start, segment};
        start += segment;
    }
    return segments;
}

MemoryCompositionBar::MemoryCompositionBar(QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void MemoryCompositionBar::setShares(double wired, double active, double compressed,
                                     double available) {
    const std::array<double, 4> updated{wired, active, compressed, available};
    if (updated != shares) {
        shares = updated;
        update();
    }
}

void MemoryCompositionBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath clip;
    clip.addRoundedRect(QRectF(0, 0, width(), 8), 2, 2);
    painter.setClipPath(clip);
    const PopoverColors& colors = colorsOf(*this);
    const std::array<QColor, 4> hues{colors.cyan, colors.red, colors.purple, colors.track};
    const auto segments = compositionSegments(shares, width());
    for (std::size_t index = 0; index < segments.size(); ++index) {
        painter.fillRect(QRectF(segments[index].start, 0, segments[index].width, 8), hues[index]);
    }
}

}  // namespace corvane
