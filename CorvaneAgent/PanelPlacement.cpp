#include "CorvaneAgent/PanelPlacement.h"

#include <algorithm>
#include <limits>

namespace corvane {

namespace {

ScreenPoint centre(const ScreenRect& rect) {
    return {rect.x + rect.width / 2, rect.y + rect.height / 2};
}

double squaredDistance(ScreenPoint point, const ScreenRect& rect) {
    const double dx = std::max({rect.x - point.x, 0.0, point.x - (rect.x + rect.width)});
    const double dy = std::max({rect.y - point.y, 0.0, point.y - (rect.y + rect.height)});
    return dx * dx + dy * dy;
}

// The item may sit outside every screen's work area (a strip or tray reserves its own space),
// so the screen is chosen by whole frames.
const ScreenArea* anchorScreen(const ScreenRect& anchor, const std::vector<ScreenArea>& screens) {
    const ScreenPoint point = centre(anchor);
    const ScreenArea* nearest = nullptr;
    double nearestDistance = std::numeric_limits<double>::infinity();
    for (const ScreenArea& screen : screens) {
        const double distance = squaredDistance(point, screen.frame);
        if (distance < nearestDistance) {
            nearest = &screen;
            nearestDistance = distance;
        }
    }
    return nearest;
}

// Larger than the range, the start of the range wins: the panel's top-left stays visible.
double clamped(double value, double low, double high) {
    return std::max(low, std::min(value, high));
}

}  // namespace

ScreenPoint panelOrigin(const ScreenRect& anchor, const std::vector<ScreenArea>& screens,
                        double width, double height) {
    const ScreenPoint below{centre(anchor).x - width / 2, anchor.y + anchor.height};
    const ScreenArea* screen = anchorScreen(anchor, screens);
    if (screen == nullptr) {
        return below;
    }
    const ScreenRect& area = screen->visibleFrame;
    const double bottom = area.y + area.height;
    double y = std::max(below.y, area.y);
    if (y + height > bottom && anchor.y - height >= area.y) {
        // A menu bar at the bottom of the screen: open upwards rather than cover the item.
        y = anchor.y - height;
    }
    return {clamped(below.x, area.x, area.x + area.width - width),
            clamped(y, area.y, bottom - height)};
}

}  // namespace corvane
