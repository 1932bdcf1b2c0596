#include "CorvaneAgent/Program/DrawnMeterViews.h"

#include <QImage>

#include <algorithm>
#include <cstring>
#include <utility>

#include "CorvaneShared/UI/StatusMetricView.h"

namespace corvane {

DrawnMeterViews::DrawnMeterViews(std::weak_ptr<const MenuBarReadings> readings,
                                 MeterSources sources)
    : readings(std::move(readings)), sources(std::move(sources)) {}

MeterContent DrawnMeterViews::content(MonitorSection section) const {
    const auto model = readings.lock();
    return meterContent(section, model.get(), sources);
}

double DrawnMeterViews::itemWidth(MonitorSection section) const {
    return content(section).columns.width;
}

std::string DrawnMeterViews::drawSignature(MonitorSection section) const {
    return corvane::drawSignature(content(section));
}

ItemImage DrawnMeterViews::draw(MonitorSection section, double devicePixelRatio,
                                double height) const {
    // A bar taller than a meter gets a sharper picture rather than a taller one: hosts that
    // ask for a 44-pixel icon at ratio 1 want the meter at twice the detail, not padding.
    const double ratio = devicePixelRatio * std::max(1.0, height / MeterLayout::itemHeight);
    const QImage image = StatusMetricView::render(content(section), ratio)
                             .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    ItemImage picture{.pixelWidth = image.width(),
                      .pixelHeight = image.height(),
                      .devicePixelRatio = ratio,
                      .pixels = std::vector<std::uint32_t>(static_cast<std::size_t>(image.width()) *
                                                           image.height())};
    for (int row = 0; row < image.height(); ++row) {
        std::memcpy(picture.pixels.data() + static_cast<std::size_t>(row) * image.width(),
                    image.constScanLine(row), static_cast<std::size_t>(image.width()) * 4);
    }
    return picture;
}

std::string DrawnMeterViews::readout(MonitorSection section) const {
    return content(section).text;
}

}  // namespace corvane
