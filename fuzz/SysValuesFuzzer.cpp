// The /sys attributes: zram's mm_stat, hwmon and powercap names, thermal trips and the zone
// state they give, and a battery's power_supply attributes with the properties made of them.
// The input's lines stand for the attribute files, in a fixed order.

#include <cmath>
#include <string>

#include "CorvaneAgent/BatteryReader.h"
#include "Foundation/NumberParsing.h"
#include "Foundation/TextTrimming.h"
#include "Platform/Linux/Hwmon.h"
#include "Platform/Linux/PowerSupplyBattery.h"
#include "Platform/Linux/TextScanning.h"
#include "Platform/Linux/ThermalZones.h"
#include "Platform/Linux/ZramMmStat.h"
#include "fuzz/FuzzSupport.h"

namespace corvane::fuzz {
namespace {

// An attribute file's value as the kernel file reader takes it: one trimmed decimal number.
std::optional<std::int64_t> attributeNumber(std::string_view& lines) {
    return parseNumber<std::int64_t>(text::trim(text::takeLine(lines)));
}

void checkNames(std::string_view name) {
    if (const auto attribute = parseHwmonAttribute(name)) {
        require(attribute->number >= 1, "hwmon: sensor numbers start at 1");
        require(isViewInto(attribute->item, name), "hwmon: the item is a view into the name");
        const char* prefix = attribute->kind == HwmonAttribute::Kind::temperature ? "temp"
                             : attribute->kind == HwmonAttribute::Kind::fan       ? "fan"
                                                                                  : "power";
        require(name.starts_with(prefix) && name.ends_with(attribute->item),
                "hwmon: kind and item come from the name");
    }
    if (const auto number = parseHwmonDirectoryNumber(name)) {
        require(name.starts_with("hwmon"), "hwmon: directory number of another name");
    }
    if (const auto zone = parseRAPLZoneNumber(name)) {
        require(name.starts_with("intel-rapl:") && name.find(':', 11) == std::string_view::npos,
                "rapl: a subzone taken for a zone");
    }
}

void checkThermal(std::string_view lines) {
    ThermalTrips trips;
    while (!lines.empty()) {
        auto line = text::takeLine(lines);
        const auto type = parseThermalTripType(text::takeField(line));
        const auto millidegrees = parseNumber<std::int64_t>(text::takeField(line));
        if (type && millidegrees) {
            trips.add(*type, *millidegrees);
        }
        const auto temperature = parseNumber<std::int64_t>(text::trim(line));
        if (temperature) {
            const auto state = zoneThermalState(*temperature, trips);
            require(!state || (*state >= ThermalState::nominal && *state <= ThermalState::critical),
                    "thermal: a state is one of the four");
            require(!state || trips.isUsable(), "thermal: a state without a usable trip");
        }
    }
    for (const auto& trip :
         {trips.passiveMillidegrees, trips.hotMillidegrees, trips.criticalMillidegrees}) {
        require(!trip || *trip > 0, "thermal: kept a trip at or below 0 °C");
    }
}

void checkBattery(std::string_view lines) {
    PowerSupplyReading reading;
    reading.status = parsePowerSupplyStatus(text::takeLine(lines));
    for (auto* field :
         {&reading.capacityPercent, &reading.energyNow, &reading.energyFull,
          &reading.energyFullDesign, &reading.chargeNow, &reading.chargeFull,
          &reading.chargeFullDesign, &reading.cycleCount, &reading.voltageNow, &reading.currentNow,
          &reading.powerNow, &reading.timeToEmptySeconds, &reading.timeToFullSeconds}) {
        *field = attributeNumber(lines);
    }
    if (const auto online = attributeNumber(lines)) {
        reading.externalOnline = *online != 0;
    }
    const auto properties = batteryPropertiesFrom(reading);
    for (const auto& [name, value] : properties.items()) {
        require(!value.is_number_float() || std::isfinite(value.get<double>()),
                "battery: a property is not finite");
    }
    if (const auto watts = dischargeWattsFrom(properties)) {
        require(std::isfinite(*watts) && *watts >= 0.0, "battery: discharge power below 0 W");
    }
    if (const auto info = batteryInfoFrom(properties)) {
        require(info->chargePercent >= 0.0 && info->chargePercent <= 100.0,
                "battery: charge outside 0...100 %");
        require(info->healthPercent >= 0.0, "battery: health below 0 %");
        require(!info->minutesRemaining || *info->minutesRemaining >= 1,
                "battery: minutes remaining below 1");
    }
}

}  // namespace
}  // namespace corvane::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    const auto text = fuzz::textOf(data, size);
    (void)parseZramMemUsedTotal(text);
    auto firstLine = text;
    fuzz::checkNames(text::takeLine(firstLine));
    fuzz::checkThermal(text);
    fuzz::checkBattery(text);
    return 0;
}
