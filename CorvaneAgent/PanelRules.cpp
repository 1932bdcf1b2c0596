#include "CorvaneAgent/PanelRules.h"

#include <algorithm>
#include <cmath>

namespace corvane {

namespace {

int wholePercent(double fraction) {
    if (!(fraction > 0)) {
        return 0;
    }
    return static_cast<int>(std::lround(std::min(fraction, 1.0) * 100));
}

}  // namespace

WholeShares wholeShares(double user, double system) {
    const int userPercent = wholePercent(user);
    const int systemPercent = std::min(100 - userPercent, wholePercent(system));
    return {userPercent, systemPercent, 100 - userPercent - systemPercent};
}

std::string_view batteryStatusKey(const BatteryInfo& battery) {
    if (battery.isCharging) {
        return "Charging";
    }
    if (battery.isFullyCharged) {
        return "Fully Charged";
    }
    if (battery.isPluggedIn) {
        return "Power Adapter";
    }
    return "Discharging";
}

TemperatureLevel temperatureLevel(double celsius) {
    if (celsius >= 95.0) {
        return TemperatureLevel::hot;
    }
    if (celsius >= 85.0) {
        return TemperatureLevel::warm;
    }
    return TemperatureLevel::normal;
}

std::string fanPercentText(const FanReading& fan, const UnitSources& sources) {
    const std::optional<double> load = fan.load();
    return load ? Units::percent(*load, sources) : std::string();
}

double rpmColumnWidth(const std::function<double(const std::string&)>& measure,
                      const UnitSources& sources) {
    return std::ceil(measure(Units::rpm(9999, sources))) + 2;
}

std::uint64_t availableMemory(std::uint64_t total, std::uint64_t used) {
    return total - std::min(total, used);
}

std::int64_t usedStorage(std::int64_t total, std::int64_t available) {
    if (available > total) {
        return 0;
    }
    return available < 0 ? total : total - available;
}

double shareOf(double part, double total) {
    return total > 0 ? part / total : 0.0;
}

std::string coresText(const std::vector<CoreTier>& tiers, int totalCores) {
    if (tiers.empty()) {
        return std::to_string(totalCores);
    }
    std::string text;
    for (const CoreTier& tier : tiers) {
        if (!text.empty()) {
            text += " + ";
        }
        text += std::to_string(tier.count) + " " + tier.name;
    }
    return text;
}

std::string fillPattern(std::string pattern, const std::vector<std::string>& arguments) {
    std::size_t from = 0;
    for (const std::string& argument : arguments) {
        const std::size_t object = pattern.find("%@", from);
        const std::size_t integer = pattern.find("%lld", from);
        const std::size_t at = std::min(object, integer);
        if (at == std::string::npos) {
            break;
        }
        const std::size_t length = at == object ? 2 : 4;
        pattern.replace(at, length, argument);
        from = at + argument.size();
    }
    return pattern;
}

}  // namespace corvane
