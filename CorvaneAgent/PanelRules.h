#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/BatteryInfo.h"
#include "CorvaneAgent/SensorReadings.h"
#include "CorvaneShared/CoreTopology.h"
#include "CorvaneShared/Units.h"

/// The arithmetic and wording rules of the detail panels, kept apart from the widgets so that
/// they are tested without a display. Any thread, provided the unit sources may be called there.
namespace corvane {

/// The CPU time split into whole percentages that always add up to 100.
struct WholeShares {
    int user = 0;
    int system = 0;
    int idle = 100;

    friend bool operator==(const WholeShares&, const WholeShares&) = default;
};

/// Rounds `user` and `system` (fractions, each capped at 1, halves away from zero) to whole
/// percentages; the system share is cut so that the two never pass 100, and idle is the rest.
/// A share at or below 0 counts as 0; the inputs must not be NaN.
WholeShares wholeShares(double user, double system);

/// The English key of the battery's state: "Charging", else "Fully Charged", else "Power
/// Adapter", else "Discharging". A full battery on the adapter is "Fully Charged".
std::string_view batteryStatusKey(const BatteryInfo& battery);

/// How alarming a temperature is; the thresholds are on degrees Celsius whatever unit is shown.
enum class TemperatureLevel { normal, warm, hot };
/// `normal` below 85 °C, `warm` from 85 up to below 95, `hot` from 95.
TemperatureLevel temperatureLevel(double celsius);

/// The fan's place between its limits as a whole percentage in the display locale; empty when
/// the limits are missing or the maximum is not above the minimum.
std::string fanPercentText(const FanReading& fan, const UnitSources& sources);

/// The width of the fans' speed column: the text of 9999 RPM as `measure` gives it (in
/// points), rounded up to a whole point, plus 2.
double rpmColumnWidth(const std::function<double(const std::string&)>& measure,
                      const UnitSources& sources);

/// Memory not in use: the total minus the used amount, never below 0.
std::uint64_t availableMemory(std::uint64_t total, std::uint64_t used);
/// The used part of a volume; 0 when the available space exceeds the total (which the sampler
/// never publishes), so the figure can never wrap.
std::int64_t usedStorage(std::int64_t total, std::int64_t available);
/// `part / total`; 0 when the total is 0.
double shareOf(double part, double total);

/// The core tiers, each as its count and name, joined with " + " ("4 Performance + 8
/// Efficiency"); without tiers (a processor whose cores are all alike, as most x86 ones) the
/// bare count of `totalCores`, so the row is never blank.
std::string coresText(const std::vector<CoreTier>& tiers, int totalCores);

/// `pattern` with each "%@" or "%lld" replaced, in order, by the next of `arguments`; extra
/// placeholders are left as they are.
std::string fillPattern(std::string pattern, const std::vector<std::string>& arguments);

}  // namespace corvane
