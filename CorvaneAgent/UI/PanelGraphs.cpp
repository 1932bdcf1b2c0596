#include "CorvaneAgent/UI/PanelGraphs.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

#include "CorvaneShared/UI/PopoverColors.h"
#include "CorvaneShared/UI/PopoverPainting.h"

namespace corvane {

namespace {

double clampedFraction(double value) {
    return std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0;
}

void fillBackground(QPainter& painter, const QRectF& area, const PopoverColors& colors) {
    QPainterPath path;
    path.addRoundedRect(area, 3, 3);
    painter.fillPath(path, colors.track);
    painter.setClipPath(path);
}

// The x of sample `index` of `count`, spread over the whole width.
double sampleX(std::size_t index, std::size_t count, double width) {
    return count < 2 ? width : width * static_cast<double>(index) / static_cast<double>(count - 1);
}

// The area between `lower` and `upper` (fractions of the height, oldest first).
QPainterPath band(const std::vector<double>& lower, const std::vector<double>& upper,
                  const QRectF& area) {
    QPainterPath path;
    const std::size_t count = upper.size();
    if (count == 0) {
        return path;
    }
    auto y = [&area](double fraction) { return area.bottom() - fraction * area.height(); };
    path.moveTo(area.left() + sampleX(0, count, area.width()), y(upper[0]));
    for (std::size_t index = 1; index < count; ++index) {
        path.lineTo(area.left() + sampleX(index, count, area.width()), y(upper[index]));
    }
    for (std::size_t index = count; index-- > 0;) {
        path.lineTo(area.left() + sampleX(index, count, area.width()), y(lower[index]));
    }
    path.closeSubpath();
    return path;
}

QColor withAlpha(QColor color, double alpha) {
    color.setAlphaF(static_cast<float>(alpha));
    return color;
}

}  // namespace

MiniHistoryGraph::MiniHistoryGraph(double height, QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setFixedHeight(static_cast<int>(std::lround(height)));
}

void MiniHistoryGraph::setHistories(const std::vector<double>& updatedUser,
                                    const std::vector<double>& updatedSystem) {
    if (updatedUser == user && updatedSystem == system) {
        return;
    }
    user = updatedUser;
    system = updatedSystem;
    update();
}

void MiniHistoryGraph::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    const QRectF area = rect();
    fillBackground(painter, area, colors);
    const std::size_t count = std::min(user.size(), system.size());
    std::vector<double> zero(count, 0.0);
    std::vector<double> userTop(count);
    std::vector<double> stackTop(count);
    for (std::size_t index = 0; index < count; ++index) {
        userTop[index] = clampedFraction(user[index]);
        stackTop[index] = std::min(1.0, userTop[index] + clampedFraction(system[index]));
    }
    painter.fillPath(band(zero, userTop, area), withAlpha(colors.cyan, 0.75));
    painter.fillPath(band(userTop, stackTop, area), withAlpha(colors.red, 0.75));
}

CoreCompactGraph::CoreCompactGraph(double height, QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setFixedHeight(static_cast<int>(std::lround(height)));
}

void CoreCompactGraph::setCores(const std::vector<double>& updatedUsages,
                                const std::vector<bool>& updatedFast) {
    if (updatedUsages == usages && updatedFast == fast) {
        return;
    }
    usages = updatedUsages;
    fast = updatedFast;
    update();
}

void CoreCompactGraph::paintEvent(QPaintEvent*) {
    if (usages.empty()) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    const double count = static_cast<double>(usages.size());
    // Bars share the width with gaps a third of a bar wide, down to hairlines for many CPUs.
    const double pitch = width() / count;
    const double gap = std::min(2.0, pitch / 3);
    const double barWidth = std::max(0.5, pitch - gap);
    for (std::size_t index = 0; index < usages.size(); ++index) {
        const double x = index * pitch;
        const QRectF track(x, 0, barWidth, height());
        painter.fillRect(track, colors.track);
        const double filled = clampedFraction(usages[index]) * height();
        const bool isFast = index < fast.size() && fast[index];
        painter.fillRect(QRectF(x, height() - filled, barWidth, filled),
                         isFast ? colors.cyan : colors.green);
    }
}

double peakLoad(const std::vector<double>& one, const std::vector<double>& five,
                const std::vector<double>& fifteen) {
    double peak = 0;
    for (const auto* history : {&one, &five, &fifteen}) {
        for (double value : *history) {
            if (std::isfinite(value)) {
                peak = std::max(peak, value);
            }
        }
    }
    return peak;
}

LoadAverageGraph::LoadAverageGraph(double height, QWidget* parent) : QWidget(parent) {
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    setFixedHeight(static_cast<int>(std::lround(height)));
}

void LoadAverageGraph::setHistories(const std::vector<double>& updatedOne,
                                    const std::vector<double>& updatedFive,
                                    const std::vector<double>& updatedFifteen,
                                    const QString& updatedCaption) {
    if (updatedOne == one && updatedFive == five && updatedFifteen == fifteen &&
        updatedCaption == caption) {
        return;
    }
    one = updatedOne;
    five = updatedFive;
    fifteen = updatedFifteen;
    caption = updatedCaption;
    update();
}

void LoadAverageGraph::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const PopoverColors& colors = colorsOf(*this);
    const QRectF area = rect();
    fillBackground(painter, area, colors);
    // Headroom above the peak keeps the highest line off the edge; a scale of at least 1 keeps
    // an idle machine's noise flat.
    const double scale = std::max(1.0, peakLoad(one, five, fifteen) * 1.15);
    const QRectF plot = area.adjusted(0, 14, 0, -2);
    const std::vector<std::pair<const std::vector<double>*, QColor>> lines = {
        {&fifteen, colors.gray}, {&five, colors.red}, {&one, colors.cyan}};
    for (const auto& [history, color] : lines) {
        QPainterPath path;
        for (std::size_t index = 0; index < history->size(); ++index) {
            const double value = std::isfinite((*history)[index]) ? (*history)[index] : 0.0;
            const QPointF point(
                plot.left() + sampleX(index, history->size(), plot.width()),
                plot.bottom() - std::clamp(value / scale, 0.0, 1.0) * plot.height());
            index == 0 ? path.moveTo(point) : path.lineTo(point);
        }
        painter.strokePath(path, QPen(color, 1.25));
    }
    painter.setFont(popoverFont(font(), 9));
    PopoverPainting::drawText(painter, QRectF(6, 1, width() - 12, 12), caption, Qt::AlignLeft,
                              Qt::ElideRight, colors.secondaryText);
}

}  // namespace corvane
