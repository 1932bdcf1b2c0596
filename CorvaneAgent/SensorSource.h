#pragma once

#include <vector>

#include "CorvaneAgent/SamplingPlan.h"
#include "CorvaneAgent/SensorReadings.h"

namespace corvane {

/// Where temperatures, fans and power come from: a system management controller, or the
/// hardware-monitoring chips of an ordinary machine. Called only from the monitor's background
/// sensor pass, one pass at a time; implementations need no lock.
class SensorSource {
public:
    virtual ~SensorSource() = default;
    /// The readable, plausible temperatures of the keys `scope` selects (none for `none`).
    virtual std::vector<TemperatureReading> temperatures(SamplingPlan::SMCScope scope) = 0;
    virtual std::vector<FanReading> fans() = 0;
    virtual std::vector<PowerReading> power() = 0;
};

}  // namespace corvane
