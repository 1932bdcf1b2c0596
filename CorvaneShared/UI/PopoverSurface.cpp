#include "CorvaneShared/UI/PopoverSurface.h"

#include <QPainter>

#include "CorvaneShared/UI/PopoverColors.h"

namespace corvane {

namespace {

// The tone of the platform's popover material, which the surface imitates without blur.
QColor materialColor(PopoverScheme scheme, double alpha) {
    return scheme == PopoverScheme::dark
               ? QColor::fromRgbF(0.17f, 0.17f, 0.18f, static_cast<float>(alpha))
               : QColor::fromRgbF(0.93f, 0.93f, 0.94f, static_cast<float>(alpha));
}

}  // namespace

PopoverSurface::PopoverSurface(QWidget* parent) : QWidget(parent) {}

void PopoverSurface::setBackground(const std::string& popoverBackground) {
    const bool updated = popoverBackground == "opaque";
    if (updated != opaque) {
        opaque = updated;
        update();
    }
}

void PopoverSurface::setCompositorRunning(bool running) {
    if (running != compositor) {
        compositor = running;
        update();
    }
}

void PopoverSurface::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const PopoverScheme scheme = schemeOf(*this);
    if (opaque) {
        painter.fillRect(rect(), popoverColors(scheme).opaqueSurface);
        return;
    }
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(rect(), materialColor(scheme, compositor ? 0.82 : 0.98));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.fillRect(rect(), QColor::fromRgbF(0, 0, 0, 0.07f));
}

}  // namespace corvane
