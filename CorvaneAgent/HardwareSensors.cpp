#include "CorvaneAgent/HardwareSensors.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <utility>

#include "CorvaneAgent/SMCDecoder.h"
#include "CorvaneAgent/SensorBounds.h"

namespace corvane {

namespace {

constexpr std::string_view applesmcChip = "applesmc";
constexpr std::string_view gpuPowerChip = "amdgpu";
constexpr std::string_view packageDomainPrefix = "package";
constexpr std::string_view platformDomain = "psys";
constexpr double microunitsPerUnit = 1e6;
constexpr double millidegreesPerDegree = 1000.0;

struct ChipCategory {
    std::string_view chip;
    SensorCategory category;
};

// Drivers whose every temperature sensor measures one kind of part.
constexpr std::array<ChipCategory, 14> chipCategories = {{
    {"coretemp", SensorCategory::cpu},
    {"k10temp", SensorCategory::cpu},
    {"k8temp", SensorCategory::cpu},
    {"zenpower", SensorCategory::cpu},
    {"via_cputemp", SensorCategory::cpu},
    {"amdgpu", SensorCategory::gpu},
    {"radeon", SensorCategory::gpu},
    {"nouveau", SensorCategory::gpu},
    {"i915", SensorCategory::gpu},
    {"xe", SensorCategory::gpu},
    {"spd5118", SensorCategory::memory},
    {"jc42", SensorCategory::memory},
    {"nvme", SensorCategory::storage},
    {"drivetemp", SensorCategory::storage},
}};

constexpr std::string_view thermalZoneSuffix = "_thermal";

bool contains(std::string_view text, std::string_view part) {
    return text.find(part) != std::string_view::npos;
}

bool containsIgnoringCase(std::string_view text, std::string_view lowerCasePart) {
    const auto found = std::search(
        text.begin(), text.end(), lowerCasePart.begin(), lowerCasePart.end(),
        [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
    return found != text.end();
}

// A thermal zone exported to hwmon carries the zone's type as its name, with '-' made '_'
// ("cpu_thermal", "bigcore0_thermal", "gpu_thermal"); the type names the place on the SoC.
std::optional<SensorCategory> thermalZoneCategory(std::string_view chip) {
    if (!chip.ends_with(thermalZoneSuffix)) {
        return std::nullopt;
    }
    const auto zone = chip.substr(0, chip.size() - thermalZoneSuffix.size());
    if (contains(zone, "gpu")) {
        return SensorCategory::gpu;
    }
    if (contains(zone, "cpu") || contains(zone, "core") || contains(zone, "soc")) {
        return SensorCategory::cpu;
    }
    if (contains(zone, "ddr") || contains(zone, "mem")) {
        return SensorCategory::memory;
    }
    return SensorCategory::other;
}

// Batteries with a temperature sensor appear under their power-supply name ("BAT0").
bool isBatteryChip(std::string_view chip) {
    return chip.starts_with("BAT") || contains(chip, "battery");
}

std::string chipPart(std::string_view chip, std::string_view distinction) {
    std::string part(chip);
    if (!distinction.empty()) {
        part += '@';
        part += distinction;
    }
    return part;
}

// What tells apart chips that share a name: the device each belongs to, else the chip's place
// among them. Empty for a chip whose name is unique, so that the common machine with one drive
// reads a plain "nvme Composite"; the price is that adding a second drive renames the first's.
std::vector<std::string> chipDistinctions(const std::vector<HwmonChip>& chips) {
    std::vector<std::string> distinctions(chips.size());
    for (std::size_t i = 0; i < chips.size(); ++i) {
        const auto sameName = [&](const HwmonChip& chip) { return chip.name == chips[i].name; };
        if (std::count_if(chips.begin(), chips.end(), sameName) < 2) {
            continue;
        }
        const auto place = std::count_if(
            chips.begin(), chips.begin() + static_cast<std::ptrdiff_t>(i) + 1, sameName);
        distinctions[i] = chips[i].device.empty() ? std::to_string(place) : chips[i].device;
    }
    return distinctions;
}

// Whether a temperature sensor is among those the menu bar reads: the CPU and GPU sensors. An
// applesmc sensor is a controller key and is read in the scope the controller source reads
// that key in, so its "Tf" and "TU" keys wait for the full scope although they classify as CPU
// and GPU.
bool readsAtMenuBarScope(std::string_view chipName, std::string_view label,
                         SensorCategory category) {
    if (category != SensorCategory::cpu && category != SensorCategory::gpu) {
        return false;
    }
    return chipName != applesmcChip || SMCDecoder::isMenuBarTemperatureKey(label);
}

std::optional<double> plausibleLimit(std::optional<std::uint64_t> rpm) {
    if (!rpm || !SensorBounds::isPlausibleFanLimit(static_cast<double>(*rpm))) {
        return std::nullopt;
    }
    return static_cast<double>(*rpm);
}

}  // namespace

SensorCategory hwmonCategory(std::string_view chipName, std::string_view label) {
    if (chipName == applesmcChip) {
        return SMCDecoder::category(label);
    }
    for (const auto& [chip, category] : chipCategories) {
        if (chip == chipName) {
            return category;
        }
    }
    if (const auto category = thermalZoneCategory(chipName)) {
        return *category;
    }
    if (isBatteryChip(chipName)) {
        return SensorCategory::battery;
    }
    // Board chips (nct6775, it87, acpitz, dell_smm, thinkpad) measure whatever the board maker
    // wired to them; only a label that says so places one.
    if (containsIgnoringCase(label, "ambient")) {
        return SensorCategory::ambient;
    }
    return SensorCategory::other;
}

std::string hwmonTemperatureKey(std::string_view chip, std::string_view distinction,
                                const HwmonSensor& sensor) {
    if (chip == applesmcChip && !sensor.label.empty()) {
        return sensor.label;
    }
    const auto name = sensor.label.empty() ? "temp" + std::to_string(sensor.number) : sensor.label;
    return chipPart(chip, distinction) + ' ' + name;
}

std::string hwmonFanKey(std::string_view chip, std::string_view distinction,
                        const HwmonSensor& sensor) {
    // applesmc numbers its fan files from 1, the controller its keys from 0.
    if (chip == applesmcChip && sensor.number >= 1) {
        return "F" + std::to_string(sensor.number - 1) + "Ac";
    }
    const auto name = sensor.label.empty() ? "fan" + std::to_string(sensor.number) : sensor.label;
    return chipPart(chip, distinction) + ' ' + name;
}

std::optional<double> averageWatts(const EnergySample& previous, const EnergySample& current,
                                   std::optional<std::uint64_t> maxEnergyRangeMicrojoules) {
    const double seconds = std::chrono::duration<double>(current.at - previous.at).count();
    if (!(seconds > 0.0)) {
        return std::nullopt;
    }
    std::uint64_t used = 0;
    if (current.microjoules >= previous.microjoules) {
        used = current.microjoules - previous.microjoules;
    } else if (maxEnergyRangeMicrojoules && previous.microjoules <= *maxEnergyRangeMicrojoules) {
        used = *maxEnergyRangeMicrojoules - previous.microjoules + current.microjoules;
    } else {
        return std::nullopt;
    }
    // Two readings cannot tell how often the counter went round in between. Within the time it
    // takes at the ceiling power it can have gone round once at most, which the subtraction
    // above handles; a longer gap (a panel opened again after an hour) gives nothing.
    if (maxEnergyRangeMicrojoules &&
        seconds * SensorBounds::powerCeilingWatts * microunitsPerUnit >=
            static_cast<double>(*maxEnergyRangeMicrojoules)) {
        return std::nullopt;
    }
    return static_cast<double>(used) / microunitsPerUnit / seconds;
}

HardwareSensors::HardwareSensors(std::unique_ptr<HardwareMonitor> monitor, SystemDraw systemDraw)
    : monitor(std::move(monitor)), systemDraw(std::move(systemDraw)) {}

std::unique_ptr<HardwareSensors> HardwareSensors::create(std::unique_ptr<HardwareMonitor> monitor,
                                                         SystemDraw systemDraw) {
    if (!monitor || monitor->chips().empty()) {
        return nullptr;
    }
    std::unique_ptr<HardwareSensors> sensors(
        new HardwareSensors(std::move(monitor), std::move(systemDraw)));
    sensors->sortSensors();
    sensors->findPowerSources();
    return sensors;
}

void HardwareSensors::sortSensors() {
    const auto& chips = monitor->chips();
    const auto distinctions = chipDistinctions(chips);
    std::vector<Sensor> gpu;
    std::vector<Sensor> rest;
    for (std::size_t chip = 0; chip < chips.size(); ++chip) {
        const auto& name = chips[chip].name;
        const auto& temperatures = chips[chip].temperatures;
        for (std::size_t sensor = 0; sensor < temperatures.size(); ++sensor) {
            const auto& label = temperatures[sensor].label;
            const auto category = hwmonCategory(name, label);
            Sensor entry{chip, sensor,
                         hwmonTemperatureKey(name, distinctions[chip], temperatures[sensor]),
                         category};
            auto& list = !readsAtMenuBarScope(name, label, category) ? rest
                         : category == SensorCategory::cpu           ? temperatureSensors
                                                                     : gpu;
            list.push_back(std::move(entry));
        }
        const auto& fans = chips[chip].fans;
        for (std::size_t sensor = 0; sensor < fans.size(); ++sensor) {
            fanSensors.push_back(
                {chip, sensor, hwmonFanKey(name, distinctions[chip], fans[sensor])});
        }
    }
    std::move(gpu.begin(), gpu.end(), std::back_inserter(temperatureSensors));
    menuBarCount = temperatureSensors.size();
    std::move(rest.begin(), rest.end(), std::back_inserter(temperatureSensors));
}

void HardwareSensors::findPowerSources() {
    const auto& domains = monitor->raplDomains();
    for (std::size_t domain = 0; domain < domains.size(); ++domain) {
        EnergyCounter counter{domain, domains[domain].maxEnergyRangeMicrojoules, std::nullopt};
        // Multi-die packages have one zone per die ("package-0-die-1"), each counting its own
        // share, so every zone whose name starts so is added.
        if (domains[domain].name.starts_with(packageDomainPrefix)) {
            packages.push_back(counter);
        } else if (domains[domain].name == platformDomain && !platform) {
            platform = counter;
        }
    }
    const auto& chips = monitor->chips();
    for (std::size_t chip = 0; chip < chips.size(); ++chip) {
        if (chips[chip].name == gpuPowerChip && !chips[chip].powers.empty()) {
            gpuPower = Sensor{chip, 0, {}, SensorCategory::gpu};
            return;
        }
    }
}

std::vector<TemperatureReading> HardwareSensors::temperatures(SamplingPlan::SMCScope scope) {
    std::vector<TemperatureReading> readings;
    if (scope == SamplingPlan::SMCScope::none) {
        return readings;
    }
    const auto count =
        scope == SamplingPlan::SMCScope::menuBar ? menuBarCount : temperatureSensors.size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto& sensor = temperatureSensors[i];
        const auto millidegrees = monitor->temperatureMillidegrees(sensor.chip, sensor.sensor);
        if (!millidegrees) {
            continue;
        }
        const double celsius = static_cast<double>(*millidegrees) / millidegreesPerDegree;
        if (SensorBounds::isPlausibleCelsius(celsius)) {
            readings.push_back({sensor.key, sensor.category, celsius});
        }
    }
    return readings;
}

std::vector<FanReading> HardwareSensors::fans() {
    std::vector<FanReading> readings;
    for (std::size_t index = 0; index < fanSensors.size(); ++index) {
        const auto& fan = fanSensors[index];
        const auto speeds = monitor->fanSpeeds(fan.chip, fan.sensor);
        if (!speeds.rpm || !SensorBounds::isPlausibleFanSpeed(static_cast<double>(*speeds.rpm))) {
            continue;
        }
        readings.push_back({fan.key, static_cast<int>(index), static_cast<double>(*speeds.rpm),
                            plausibleLimit(speeds.minimumRPM), plausibleLimit(speeds.maximumRPM)});
    }
    return readings;
}

std::vector<PowerReading> HardwareSensors::power() {
    std::vector<PowerReading> readings;
    const auto append = [&](PowerChannel channel, std::optional<double> watts) {
        if (watts && SensorBounds::isPlausibleWatts(*watts)) {
            readings.push_back({channel, *watts});
        }
    };
    append(PowerChannel::system, systemWatts());
    append(PowerChannel::cpu, packageWatts());
    append(PowerChannel::gpu, gpuWatts());
    return readings;
}

std::optional<double> HardwareSensors::advance(EnergyCounter& counter) {
    const auto sample = monitor->energy(counter.domain);
    if (!sample) {
        // The last good reading stays the baseline: an occasional failed read costs one pass,
        // and the gap check in averageWatts covers a long run of them.
        return std::nullopt;
    }
    const auto previous = std::exchange(counter.previous, *sample);
    if (!previous) {
        return std::nullopt;
    }
    return averageWatts(*previous, *sample, counter.maxEnergyRangeMicrojoules);
}

std::optional<double> HardwareSensors::packageWatts() {
    if (packages.empty()) {
        return std::nullopt;
    }
    // Every counter advances on every pass, even after one has failed, so that none of them
    // keeps a stale baseline. A sum missing a package would understate the CPU; it gives none.
    double total = 0;
    bool complete = true;
    for (auto& counter : packages) {
        const auto watts = advance(counter);
        complete = complete && watts.has_value();
        total += watts.value_or(0);
    }
    return complete ? std::optional<double>(total) : std::nullopt;
}

std::optional<double> HardwareSensors::systemWatts() {
    // The platform meter when it answers; it is root-only on most kernels, and has no baseline
    // on the first pass, so the battery's discharge stands in whenever it does not.
    if (platform) {
        if (auto watts = advance(*platform)) {
            return watts;
        }
    }
    return systemDraw ? systemDraw() : std::nullopt;
}

std::optional<double> HardwareSensors::gpuWatts() {
    if (!gpuPower) {
        return std::nullopt;
    }
    const auto microwatts = monitor->powerMicrowatts(gpuPower->chip, gpuPower->sensor);
    if (!microwatts) {
        return std::nullopt;
    }
    return static_cast<double>(*microwatts) / microunitsPerUnit;
}

}  // namespace corvane
