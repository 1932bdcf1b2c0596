#pragma once

#include <memory>

#include "CorvaneAgent/MenuBarMeter.h"
#include "CorvaneAgent/MeterViews.h"

namespace corvane {

class MenuBarReadings;

/// The menu-bar meters drawn by the meter drawing code for the status bar: widths, signatures
/// and pictures all come from one `meterContent`, so what is measured is what is drawn.
/// Main thread only.
class DrawnMeterViews final : public MeterViews {
public:
    /// `readings` is held weakly: once the model is gone the meters show no values.
    DrawnMeterViews(std::weak_ptr<const MenuBarReadings> readings, MeterSources sources);

    double itemWidth(MonitorSection section) const override;
    std::string drawSignature(MonitorSection section) const override;
    ItemImage draw(MonitorSection section, double devicePixelRatio, double height) const override;
    std::string readout(MonitorSection section) const override;

private:
    MeterContent content(MonitorSection section) const;

    std::weak_ptr<const MenuBarReadings> readings;
    MeterSources sources;
};

}  // namespace corvane
