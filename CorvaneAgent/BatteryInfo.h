#pragma once

#include <optional>

namespace corvane {

/// The battery as the power-supply service reports it.
struct BatteryInfo {
    double chargePercent = 0;
    double healthPercent = 0;
    int cycleCount = 0;
    double volts = 0;
    /// Amperes; negative while discharging.
    double amps = 0;
    bool isCharging = false;
    bool isPluggedIn = false;
    bool isFullyCharged = false;
    /// Minutes to empty or to full; absent when unknown or a day or more.
    std::optional<int> minutesRemaining;

    friend bool operator==(const BatteryInfo&, const BatteryInfo&) = default;
};

}  // namespace corvane
