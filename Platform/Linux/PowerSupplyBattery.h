#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/BatteryProperties.h"

namespace corvane {

/// A power supply's `status` attribute.
enum class PowerSupplyStatus { unknown, charging, discharging, notCharging, full };

/// "Charging\n" and the other statuses the kernel prints; anything else is `unknown`.
[[nodiscard]] PowerSupplyStatus parsePowerSupplyStatus(std::string_view text);

/// One battery's sysfs attributes in the kernel's units (percent, µWh, µAh, µV, µA, µW,
/// seconds), each absent when its file is missing or unreadable.
struct PowerSupplyReading {
    std::optional<PowerSupplyStatus> status;
    std::optional<std::int64_t> capacityPercent;
    std::optional<std::int64_t> energyNow;
    std::optional<std::int64_t> energyFull;
    std::optional<std::int64_t> energyFullDesign;
    std::optional<std::int64_t> chargeNow;
    std::optional<std::int64_t> chargeFull;
    std::optional<std::int64_t> chargeFullDesign;
    std::optional<std::int64_t> cycleCount;
    std::optional<std::int64_t> voltageNow;
    std::optional<std::int64_t> currentNow;
    std::optional<std::int64_t> powerNow;
    std::optional<std::int64_t> timeToEmptySeconds;
    std::optional<std::int64_t> timeToFullSeconds;
    /// Whether an external supply (mains, USB, wireless) is online; absent when the machine
    /// lists none, as on boards whose charger has no power-supply driver.
    std::optional<bool> externalOnline;
};

/// The battery's properties under the names and units of BatteryPropertySource. See
/// docs/linux-port.md for each property's source and fallbacks.
[[nodiscard]] StatisticsDictionary batteryPropertiesFrom(const PowerSupplyReading& reading);

/// The power the battery delivers, in watts, from "Amperage" and "Voltage": absent unless it is
/// discharging (negative amperage) at a known voltage.
[[nodiscard]] std::optional<double> dischargeWattsFrom(const StatisticsDictionary& properties);

/// The battery that powers the machine, read from <sysfs>/class/power_supply: the first supply
/// (in name order) of type "Battery" whose scope is not "Device" (a mouse's or a headset's
/// battery powers only that peripheral). Any thread; calls may overlap (each keeps its own
/// buffer).
class PowerSupplyBattery final : public BatteryPropertySource {
public:
    /// Lists the supplies once; null when the machine has no such battery.
    [[nodiscard]] static std::unique_ptr<PowerSupplyBattery> find(
        const std::filesystem::path& sysRoot);

    /// Absent when the battery's folder went away (a removed battery).
    [[nodiscard]] std::optional<StatisticsDictionary> properties() const override;
    /// The battery's discharge power in watts; absent while it is not discharging or when its
    /// current or voltage cannot be read.
    [[nodiscard]] std::optional<double> dischargeWatts() const;

private:
    PowerSupplyBattery(std::string supplyDirectory, std::string batteryName);

    std::string supplyDirectory;
    std::string batteryName;
};

}  // namespace corvane
