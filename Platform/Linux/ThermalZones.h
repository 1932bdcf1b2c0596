#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Linux/KernelFileReader.h"
#include "Platform/SystemStatistics.h"

namespace corvane {

/// What a thermal trip point asks of the kernel when crossed.
enum class ThermalTripType { active, passive, hot, critical };

/// A trip_point_N_type file ("passive\n"); absent for a type the kernel does not define.
[[nodiscard]] std::optional<ThermalTripType> parseThermalTripType(std::string_view text);

/// The trip points of one zone that the rule looks at: the lowest of each kind, in millidegrees.
struct ThermalTrips {
    std::optional<std::int64_t> passiveMillidegrees;
    std::optional<std::int64_t> hotMillidegrees;
    std::optional<std::int64_t> criticalMillidegrees;

    /// Keeps the trip when it is the lowest of its kind so far. Active trips (fans) and trips at
    /// or below 0 °C (disabled or never set) are ignored.
    void add(ThermalTripType type, std::int64_t millidegrees);
    /// True when at least one passive, hot or critical trip was kept.
    [[nodiscard]] bool isUsable() const;

    friend bool operator==(const ThermalTrips&, const ThermalTrips&) = default;
};

/// How far below the zone's throttling point (its lowest passive or hot trip) "fair" begins.
inline constexpr std::int64_t fairMarginMillidegrees = 10'000;
/// How far below the critical trip (where the kernel shuts the machine down) "critical" begins.
inline constexpr std::int64_t criticalMarginMillidegrees = 5'000;
/// Where a zone with only a critical trip is taken to throttle: this far below it.
inline constexpr std::int64_t criticalOnlyThrottleMarginMillidegrees = 15'000;

/// One zone's state at `millidegrees`: critical from the critical trip less its margin, serious
/// from the throttling point, fair from the throttling point less its margin, else nominal.
/// Absent when the zone has no usable trip or the temperature is at or below absolute zero.
[[nodiscard]] std::optional<ThermalState> zoneThermalState(std::int64_t millidegrees,
                                                           const ThermalTrips& trips);

/// The machine's thermal state from the zones under <sysfs>/class/thermal: the worst state of
/// the zones that have a usable trip and a readable temperature. The zones and their trips are
/// found once and again every `rescanInterval` reads; in between, a read opens only each usable
/// zone's `temp`. One thread at a time.
class ThermalZones {
public:
    /// A minute at the default refresh interval: trips change only when firmware or an
    /// administrator moves them, and zones come and go only with their drivers.
    static constexpr unsigned rescanInterval = 60;

    explicit ThermalZones(const std::filesystem::path& sysRoot);

    /// Absent when no zone gives a usable reading.
    [[nodiscard]] std::optional<ThermalState> readState(KernelFileReader& reader);

private:
    struct Zone {
        std::string temperaturePath;
        ThermalTrips trips;
    };

    void findZones(KernelFileReader& reader);
    ThermalTrips readTrips(KernelFileReader& reader, const std::string& zoneDirectory);

    std::string thermalDirectory;
    std::vector<Zone> zones;
    unsigned readsSinceScan = rescanInterval;
};

}  // namespace corvane
