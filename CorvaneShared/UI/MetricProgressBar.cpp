#include "CorvaneShared/UI/MetricProgressBar.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace corvane {

double filledFraction(double value) {
    return value > 0 ? std::min(value, 1.0) : 0.0;
}

MetricProgressBar::MetricProgressBar(double value, std::optional<PopoverHue> fill, QWidget* parent)
    : QWidget(parent), fraction(value), fill(fill) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void MetricProgressBar::setValue(double value) {
    const bool sameDrawing = filledFraction(value) == filledFraction(fraction);
    fraction = value;
    if (!sameDrawing) {
        update();
    }
}

void MetricProgressBar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    const QRectF track(0, 0, width(), 8);
    QPainterPath trackPath;
    trackPath.addRoundedRect(track, 2, 2);
    painter.fillPath(trackPath, colors.track);
    const double filled = track.width() * filledFraction(fraction);
    if (filled <= 0) {
        return;
    }
    QPainterPath fillPath;
    fillPath.addRoundedRect(QRectF(0, 0, filled, 8), 2, 2);
    painter.fillPath(fillPath, colorOf(colors, fill.value_or(PopoverHue::defaultFill)));
}

}  // namespace corvane
