#include "CorvaneAgent/BatteryReader.h"

#include <cmath>
#include <limits>
#include <utility>

namespace corvane {

namespace {

constexpr double minutesPerDay = 24 * 60;

// The property as a double when it is a finite number. Booleans are not numbers here.
std::optional<double> number(const StatisticsDictionary& properties, const char* key) {
    const auto found = properties.find(key);
    if (found == properties.end() || !found->is_number()) {
        return std::nullopt;
    }
    const auto value = found->get<double>();
    if (!std::isfinite(value)) {
        return std::nullopt;
    }
    return value;
}

// True for a true boolean or a non-zero number; false for anything else or nothing.
bool flag(const StatisticsDictionary& properties, const char* key) {
    const auto found = properties.find(key);
    if (found == properties.end()) {
        return false;
    }
    if (found->is_boolean()) {
        return found->get<bool>();
    }
    return found->is_number() && found->get<double>() != 0;
}

// Toward zero; absent when the whole part does not fit an int.
std::optional<int> truncated(std::optional<double> value) {
    if (!value || *value <= std::numeric_limits<int>::min() - 1.0 ||
        *value >= std::numeric_limits<int>::max() + 1.0) {
        return std::nullopt;
    }
    return static_cast<int>(*value);
}

}  // namespace

std::optional<BatteryInfo> batteryInfoFrom(const StatisticsDictionary& properties) {
    if (!properties.is_object()) {
        return std::nullopt;
    }
    const auto charge = number(properties, "CurrentCapacity");
    if (!charge) {
        return std::nullopt;
    }
    BatteryInfo info{.chargePercent = *charge};
    // A day or more is how gauges say "no estimate" (65535 is a common sentinel), so only
    // values that truncate to 1…1439 minutes are kept.
    if (const auto minutes = number(properties, "TimeRemaining");
        minutes && *minutes >= 1 && *minutes < minutesPerDay) {
        info.minutesRemaining = static_cast<int>(*minutes);
    }
    // Taken as the health percentage as it stands: the gauge already relates it to the design.
    info.healthPercent = number(properties, "MaxCapacity").value_or(0);
    info.cycleCount = truncated(number(properties, "CycleCount")).value_or(0);
    info.volts = number(properties, "Voltage").value_or(0) / 1000;
    info.amps = number(properties, "Amperage").value_or(0) / 1000;
    info.isCharging = flag(properties, "IsCharging");
    info.isPluggedIn = flag(properties, "ExternalConnected");
    info.isFullyCharged = flag(properties, "FullyCharged");
    return info;
}

BatteryReader::BatteryReader(BatteryLookup lookup) : lookup(std::move(lookup)) {}

std::optional<BatteryInfo> BatteryReader::read() {
    // The first read may come from the sensor task while another thread reads too.
    std::call_once(lookedUp, [this] {
        if (lookup) {
            battery = lookup();
        }
        lookup = nullptr;
    });
    if (!battery) {
        return std::nullopt;
    }
    const auto properties = battery->properties();
    return properties ? batteryInfoFrom(*properties) : std::nullopt;
}

}  // namespace corvane
