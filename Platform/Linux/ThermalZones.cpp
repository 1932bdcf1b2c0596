#include "Platform/Linux/ThermalZones.h"

#include <unistd.h>

#include <algorithm>
#include <array>

#include "Foundation/DirectoryListing.h"
#include "Foundation/EnumNames.h"
#include "Foundation/NumberParsing.h"
#include "Platform/Linux/TextScanning.h"

namespace corvane {

namespace {

constexpr std::string_view zonePrefix = "thermal_zone";
// The kernel numbers a zone's trips from 0 without gaps; this only bounds a runaway listing.
constexpr int maxTrips = 64;
// The kernel's THERMAL_TEMP_INVALID is -274000: anything at or below absolute zero is a sensor
// reporting that it has no reading.
constexpr std::int64_t absoluteZeroMillidegrees = -273'150;

constexpr std::array<EnumName<ThermalTripType>, 4> tripTypeNames{{
    {ThermalTripType::active, "active"},
    {ThermalTripType::passive, "passive"},
    {ThermalTripType::hot, "hot"},
    {ThermalTripType::critical, "critical"},
}};

std::optional<std::int64_t> readMillidegrees(KernelFileReader& reader, const std::string& path) {
    return reader.readNumber<std::int64_t>(path.c_str());
}

}  // namespace

std::optional<ThermalTripType> parseThermalTripType(std::string_view text) {
    return enumFromRaw(tripTypeNames, text::trim(text));
}

void ThermalTrips::add(ThermalTripType type, std::int64_t millidegrees) {
    // Writable trips (x86_pkg_temp's) read 0 until someone sets them; disabled ones read as
    // THERMAL_TEMP_INVALID. Neither is a point the machine acts on.
    if (millidegrees <= 0) {
        return;
    }
    auto keepLowest = [millidegrees](std::optional<std::int64_t>& slot) {
        slot = slot ? std::min(*slot, millidegrees) : millidegrees;
    };
    switch (type) {
        case ThermalTripType::active: return;
        case ThermalTripType::passive: keepLowest(passiveMillidegrees); return;
        case ThermalTripType::hot: keepLowest(hotMillidegrees); return;
        case ThermalTripType::critical: keepLowest(criticalMillidegrees); return;
    }
}

bool ThermalTrips::isUsable() const {
    return passiveMillidegrees || hotMillidegrees || criticalMillidegrees;
}

std::optional<ThermalState> zoneThermalState(std::int64_t millidegrees, const ThermalTrips& trips) {
    if (!trips.isUsable() || millidegrees <= absoluteZeroMillidegrees) {
        return std::nullopt;
    }
    if (trips.criticalMillidegrees &&
        millidegrees >= *trips.criticalMillidegrees - criticalMarginMillidegrees) {
        return ThermalState::critical;
    }
    // Passive trips are where the kernel starts throttling; hot trips are where the platform
    // is told to act. Either way the machine is no longer running at full speed.
    std::optional<std::int64_t> throttle;
    if (trips.passiveMillidegrees || trips.hotMillidegrees) {
        throttle = std::min(trips.passiveMillidegrees.value_or(INT64_MAX),
                            trips.hotMillidegrees.value_or(INT64_MAX));
    } else {
        throttle = *trips.criticalMillidegrees - criticalOnlyThrottleMarginMillidegrees;
    }
    if (millidegrees >= *throttle) {
        return ThermalState::serious;
    }
    if (millidegrees >= *throttle - fairMarginMillidegrees) {
        return ThermalState::fair;
    }
    return ThermalState::nominal;
}

ThermalZones::ThermalZones(const std::filesystem::path& sysRoot)
    : thermalDirectory((sysRoot / "class/thermal").string()) {}

std::optional<ThermalState> ThermalZones::readState(KernelFileReader& reader) {
    if (++readsSinceScan >= rescanInterval) {
        findZones(reader);
    }
    std::optional<ThermalState> worst;
    for (const auto& zone : zones) {
        // A zone whose device is powered down (a Wi-Fi card's) fails its read; it has no say.
        const auto millidegrees = readMillidegrees(reader, zone.temperaturePath);
        const auto state =
            millidegrees ? zoneThermalState(*millidegrees, zone.trips) : std::nullopt;
        if (state && (!worst || *state > *worst)) {
            worst = state;
        }
    }
    return worst;
}

void ThermalZones::findZones(KernelFileReader& reader) {
    readsSinceScan = 0;
    zones.clear();
    std::vector<std::string> directories;
    DirectoryListing listing(thermalDirectory.c_str());
    while (const auto name = listing.next()) {
        if (name->starts_with(zonePrefix)) {
            directories.push_back(thermalDirectory + "/" + std::string(*name) + "/");
        }
    }
    std::sort(directories.begin(), directories.end());
    for (const auto& zoneDirectory : directories) {
        auto trips = readTrips(reader, zoneDirectory);
        // A zone without a trip the rule reads is never opened on a refresh.
        if (trips.isUsable()) {
            zones.push_back({zoneDirectory + "temp", trips});
        }
    }
}

ThermalTrips ThermalZones::readTrips(KernelFileReader& reader, const std::string& zoneDirectory) {
    ThermalTrips trips;
    for (int i = 0; i < maxTrips; ++i) {
        const auto prefix = zoneDirectory + "trip_point_" + std::to_string(i);
        const auto typePath = prefix + "_type";
        if (::access(typePath.c_str(), F_OK) != 0) {
            break;
        }
        const auto typeText = reader.read(typePath.c_str());
        const auto type = typeText ? parseThermalTripType(*typeText) : std::nullopt;
        const auto millidegrees = readMillidegrees(reader, prefix + "_temp");
        if (type && millidegrees) {
            trips.add(*type, *millidegrees);
        }
    }
    return trips;
}

}  // namespace corvane
