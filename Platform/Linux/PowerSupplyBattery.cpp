#include "Platform/Linux/PowerSupplyBattery.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "Foundation/DirectoryListing.h"
#include "Foundation/EnumNames.h"
#include "Foundation/NumberParsing.h"
#include "Platform/Linux/KernelFileReader.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

// sysfs attributes are at most a page long.
constexpr std::size_t attributeLimitBytes = 4096;
constexpr double secondsPerMinute = 60;
constexpr double minutesPerHour = 60;
constexpr double microPerMilli = 1000;

// As the kernel's power_supply class prints them; "Unknown" and anything else read as unknown.
constexpr std::array<EnumName<PowerSupplyStatus>, 4> statusNames{{
    {PowerSupplyStatus::charging, "Charging"},
    {PowerSupplyStatus::discharging, "Discharging"},
    {PowerSupplyStatus::notCharging, "Not charging"},
    {PowerSupplyStatus::full, "Full"},
}};

std::vector<std::string> listSupplies(const std::string& supplyDirectory) {
    std::vector<std::string> names;
    DirectoryListing listing(supplyDirectory.c_str());
    while (const auto name = listing.next()) {
        if (!name->starts_with('.')) {
            names.emplace_back(*name);
        }
    }
    // Directory order is arbitrary; name order makes BAT0 win over BAT1 on every start.
    std::sort(names.begin(), names.end());
    return names;
}

std::optional<std::string_view> readText(KernelFileReader& reader, const std::string& path) {
    const auto text = reader.read(path.c_str());
    return text ? std::optional(text::trim(*text)) : std::nullopt;
}

std::optional<std::int64_t> readInteger(KernelFileReader& reader, const std::string& path) {
    return reader.readNumber<std::int64_t>(path.c_str());
}

// A peripheral's supply (a wireless mouse, a headset, a phone on USB) says so with scope
// "Device"; the machine's own supplies say "System" or, on most drivers, nothing.
bool powersTheSystem(KernelFileReader& reader, const std::string& supply) {
    return readText(reader, supply + "/scope") != "Device";
}

bool isExternalType(std::string_view type) {
    // USB comes in many kinds (USB_C, USB_PD, USB_DCP, ...), all of them adapters.
    return type == "Mains" || type.starts_with("USB") || type == "Wireless";
}

std::optional<bool> readExternalOnline(KernelFileReader& reader, const std::string& supplyDirectory,
                                       const std::string& batteryName) {
    std::optional<bool> online;
    for (const auto& name : listSupplies(supplyDirectory)) {
        if (name == batteryName) {
            continue;
        }
        const auto supply = supplyDirectory + "/" + name;
        const auto type = readText(reader, supply + "/type");
        if (!type || !isExternalType(*type) || !powersTheSystem(reader, supply)) {
            continue;
        }
        // USB supplies say 2 when online with a programmable voltage.
        const auto state = readInteger(reader, supply + "/online");
        online = online.value_or(false) || state.value_or(0) > 0;
    }
    return online;
}

PowerSupplyReading readBattery(KernelFileReader& reader, const std::string& battery) {
    auto number = [&](const char* attribute) { return readInteger(reader, battery + attribute); };
    PowerSupplyReading reading;
    if (const auto status = reader.read((battery + "/status").c_str())) {
        reading.status = parsePowerSupplyStatus(*status);
    }
    reading.capacityPercent = number("/capacity");
    reading.energyNow = number("/energy_now");
    reading.energyFull = number("/energy_full");
    reading.energyFullDesign = number("/energy_full_design");
    reading.chargeNow = number("/charge_now");
    reading.chargeFull = number("/charge_full");
    reading.chargeFullDesign = number("/charge_full_design");
    reading.cycleCount = number("/cycle_count");
    reading.voltageNow = number("/voltage_now");
    reading.currentNow = number("/current_now");
    reading.powerNow = number("/power_now");
    reading.timeToEmptySeconds = number("/time_to_empty_now");
    reading.timeToFullSeconds = number("/time_to_full_now");
    return reading;
}

// part ÷ whole × 100; absent without both or with a whole of 0.
std::optional<double> percentOf(const std::optional<std::int64_t>& part,
                                const std::optional<std::int64_t>& whole) {
    // No battery holds a negative amount: such a reading is a driver's garbage, not a share.
    if (!part || !whole || *whole <= 0 || *part < 0) {
        return std::nullopt;
    }
    return static_cast<double>(*part) / static_cast<double>(*whole) * 100;
}

// Hours as amount ÷ rate (µWh ÷ µW, µAh ÷ µA), in minutes; absent without both, at rest, or
// for an amount below zero.
std::optional<double> minutesAt(const std::optional<std::int64_t>& amount,
                                const std::optional<std::int64_t>& rate) {
    if (!amount || !rate || *rate == 0 || *amount < 0) {
        return std::nullopt;
    }
    return static_cast<double>(*amount) / std::abs(static_cast<double>(*rate)) * minutesPerHour;
}

// full − now; absent without both, or when either is below zero: no battery holds a negative
// amount, so such a number is a driver's garbage (and could overflow the subtraction).
std::optional<std::int64_t> difference(const std::optional<std::int64_t>& full,
                                       const std::optional<std::int64_t>& now) {
    if (!full || !now || *full < 0 || *now < 0) {
        return std::nullopt;
    }
    return *full - *now;
}

std::optional<double> minutesRemaining(const PowerSupplyReading& r) {
    const auto status = r.status.value_or(PowerSupplyStatus::unknown);
    if (status == PowerSupplyStatus::discharging) {
        // Some gauges write 0 while they have no estimate yet.
        if (r.timeToEmptySeconds.value_or(0) > 0) {
            return static_cast<double>(*r.timeToEmptySeconds) / secondsPerMinute;
        }
        if (auto minutes = minutesAt(r.energyNow, r.powerNow)) {
            return minutes;
        }
        return minutesAt(r.chargeNow, r.currentNow);
    }
    if (status == PowerSupplyStatus::charging) {
        if (r.timeToFullSeconds.value_or(0) > 0) {
            return static_cast<double>(*r.timeToFullSeconds) / secondsPerMinute;
        }
        if (auto minutes = minutesAt(difference(r.energyFull, r.energyNow), r.powerNow)) {
            return minutes;
        }
        return minutesAt(difference(r.chargeFull, r.chargeNow), r.currentNow);
    }
    return std::nullopt;
}

std::optional<double> milliamperes(const PowerSupplyReading& r) {
    std::optional<double> value;
    if (r.currentNow) {
        value = static_cast<double>(*r.currentNow) / microPerMilli;
    } else if (r.powerNow && r.voltageNow && *r.voltageNow > 0) {
        // µW ÷ µV is amperes.
        value = static_cast<double>(*r.powerNow) / static_cast<double>(*r.voltageNow) * 1000;
    }
    if (!value) {
        return std::nullopt;
    }
    // Drivers disagree on the sign (ACPI reports the magnitude either way, a few fuel gauges
    // count discharge as positive); the status settles the direction.
    switch (r.status.value_or(PowerSupplyStatus::unknown)) {
        case PowerSupplyStatus::discharging: return -std::abs(*value);
        case PowerSupplyStatus::charging: return std::abs(*value);
        default: return value;
    }
}

std::optional<bool> externalConnected(const PowerSupplyReading& r) {
    if (r.externalOnline) {
        return r.externalOnline;
    }
    // Without an adapter driver, only a battery that is not discharging tells of one.
    switch (r.status.value_or(PowerSupplyStatus::unknown)) {
        case PowerSupplyStatus::charging:
        case PowerSupplyStatus::notCharging:
        case PowerSupplyStatus::full: return true;
        case PowerSupplyStatus::discharging: return false;
        case PowerSupplyStatus::unknown: return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

PowerSupplyStatus parsePowerSupplyStatus(std::string_view text) {
    return enumFromRaw(statusNames, text::trim(text)).value_or(PowerSupplyStatus::unknown);
}

StatisticsDictionary batteryPropertiesFrom(const PowerSupplyReading& r) {
    auto properties = StatisticsDictionary::object();
    auto put = [&](const char* name, const auto& value) {
        if (value) {
            properties[name] = *value;
        }
    };
    // Drivers without a capacity attribute (a few fuel gauges) still give now and full.
    std::optional<double> charge;
    if (r.capacityPercent) {
        charge = static_cast<double>(*r.capacityPercent);
    } else if (auto fromEnergy = percentOf(r.energyNow, r.energyFull)) {
        charge = fromEnergy;
    } else {
        charge = percentOf(r.chargeNow, r.chargeFull);
    }
    // Gauges overshoot at the ends (capacity 101, energy_now past energy_full at a full charge,
    // a few below 0 when empty); the charge is a percentage whatever they say.
    if (charge) {
        charge = std::clamp(*charge, 0.0, 100.0);
    }
    put("CurrentCapacity", charge);
    // Health: what the battery holds when full against what it held new. Energy and charge
    // drivers give one pair or the other.
    auto health = percentOf(r.energyFull, r.energyFullDesign);
    put("MaxCapacity", health ? health : percentOf(r.chargeFull, r.chargeFullDesign));
    put("CycleCount", r.cycleCount);
    if (r.voltageNow) {
        properties["Voltage"] = static_cast<double>(*r.voltageNow) / microPerMilli;
    }
    put("Amperage", milliamperes(r));
    if (r.status) {
        properties["IsCharging"] = *r.status == PowerSupplyStatus::charging;
        properties["FullyCharged"] = *r.status == PowerSupplyStatus::full;
    }
    put("ExternalConnected", externalConnected(r));
    put("TimeRemaining", minutesRemaining(r));
    return properties;
}

std::optional<double> dischargeWattsFrom(const StatisticsDictionary& properties) {
    const auto amperage = properties.find("Amperage");
    const auto voltage = properties.find("Voltage");
    if (amperage == properties.end() || voltage == properties.end() || !amperage->is_number() ||
        !voltage->is_number()) {
        return std::nullopt;
    }
    const double milliamperes = amperage->get<double>();
    const double millivolts = voltage->get<double>();
    if (milliamperes >= 0 || millivolts <= 0) {
        return std::nullopt;
    }
    return -milliamperes * millivolts / 1e6;
}

PowerSupplyBattery::PowerSupplyBattery(std::string supplyDirectory, std::string batteryName)
    : supplyDirectory(std::move(supplyDirectory)), batteryName(std::move(batteryName)) {}

std::unique_ptr<PowerSupplyBattery> PowerSupplyBattery::find(const std::filesystem::path& sysRoot) {
    KernelFileReader reader(attributeLimitBytes);
    const auto supplyDirectory = (sysRoot / "class/power_supply").string();
    for (const auto& name : listSupplies(supplyDirectory)) {
        const auto supply = supplyDirectory + "/" + name;
        if (readText(reader, supply + "/type") == "Battery" && powersTheSystem(reader, supply)) {
            return std::unique_ptr<PowerSupplyBattery>(
                new PowerSupplyBattery(supplyDirectory, name));
        }
    }
    return nullptr;
}

std::optional<StatisticsDictionary> PowerSupplyBattery::properties() const {
    KernelFileReader reader(attributeLimitBytes);
    const auto battery = supplyDirectory + "/" + batteryName;
    if (::access(battery.c_str(), F_OK) != 0) {
        return std::nullopt;
    }
    auto reading = readBattery(reader, battery);
    reading.externalOnline = readExternalOnline(reader, supplyDirectory, batteryName);
    return batteryPropertiesFrom(reading);
}

std::optional<double> PowerSupplyBattery::dischargeWatts() const {
    const auto current = properties();
    return current ? dischargeWattsFrom(*current) : std::nullopt;
}

}  // namespace corvane
