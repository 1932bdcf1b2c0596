#pragma once

// The ranges outside which a sensor figure is taken for a fault rather than a reading, shared
// by every sensor source so that a machine shows the same readings whichever source it has.
// Each comparison is written so that NaN fails it.
namespace corvane::SensorBounds {

/// Degrees Celsius strictly between 0 and 150: idle or absent sensors read 0 or less, and
/// nothing the monitor shows survives 150.
[[nodiscard]] constexpr bool isPlausibleCelsius(double celsius) {
    return celsius > 0.0 && celsius < 150.0;
}

/// A fan speed from 0 (stopped) up to below 20000 rpm.
[[nodiscard]] constexpr bool isPlausibleFanSpeed(double rpm) {
    return rpm >= 0.0 && rpm < 20000.0;
}

/// A fan's minimum or maximum, strictly between 0 and 20000 rpm; a limit of 0 means none.
[[nodiscard]] constexpr bool isPlausibleFanLimit(double rpm) {
    return rpm > 0.0 && rpm < 20000.0;
}

/// The lowest power, in watts, that no channel reports.
inline constexpr double powerCeilingWatts = 1000.0;

/// A power channel from 0 up to below `powerCeilingWatts`.
[[nodiscard]] constexpr bool isPlausibleWatts(double watts) {
    return watts >= 0.0 && watts < powerCeilingWatts;
}

}  // namespace corvane::SensorBounds
