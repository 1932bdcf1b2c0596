#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Runtime.h"

namespace corvane {

/// One sensor of a hardware-monitoring chip: the N of its files and its label.
struct HwmonSensor {
    int number = 0;
    /// The driver's label for the sensor, trimmed; empty when it gives none.
    std::string label;

    friend bool operator==(const HwmonSensor&, const HwmonSensor&) = default;
};

/// A hardware-monitoring chip and the sensors it had when the monitor was created, each list
/// in ascending sensor number.
struct HwmonChip {
    /// The driver's name for the chip ("coretemp", "nvme", "applesmc").
    std::string name;
    /// The kernel's name for the hardware the chip measures, preferably its bus address
    /// ("0000:01:00.0", "1-0050"); empty when the chip names no device.
    std::string device;
    std::vector<HwmonSensor> temperatures;
    std::vector<HwmonSensor> fans;
    std::vector<HwmonSensor> powers;

    friend bool operator==(const HwmonChip&, const HwmonChip&) = default;
};

/// A fan's speed and limits in revolutions per minute, as the driver reports them; each absent
/// when the chip has no such file or it cannot be read.
struct HwmonFanSpeeds {
    std::optional<std::uint64_t> rpm;
    std::optional<std::uint64_t> minimumRPM;
    std::optional<std::uint64_t> maximumRPM;

    friend bool operator==(const HwmonFanSpeeds&, const HwmonFanSpeeds&) = default;
};

/// A top-level energy-counting power zone ("package-0", "psys").
struct RAPLDomain {
    std::string name;
    /// The value after which the counter starts again from 0; absent when unreadable.
    std::optional<std::uint64_t> maxEnergyRangeMicrojoules;

    friend bool operator==(const RAPLDomain&, const RAPLDomain&) = default;
};

/// An energy counter's value and the monotonic time it was read at.
struct EnergySample {
    std::uint64_t microjoules = 0;
    TimePoint at;
};

/// The kernel's hardware-monitoring chips and energy counters. Chips, sensors and domains are
/// found once, when the monitor is created; each read then touches one file. Used by one
/// sensor pass at a time; implementations need no lock.
class HardwareMonitor {
public:
    virtual ~HardwareMonitor() = default;
    /// The chips found, in the kernel's registration order.
    virtual const std::vector<HwmonChip>& chips() const = 0;
    /// The top-level energy domains found, in zone number order.
    virtual const std::vector<RAPLDomain>& raplDomains() const = 0;
    /// Sensor `sensor` of `chips()[chip].temperatures`, in millidegrees Celsius; absent when it
    /// cannot be read or is not a number.
    virtual std::optional<std::int64_t> temperatureMillidegrees(std::size_t chip,
                                                                std::size_t sensor) = 0;
    /// Fan `sensor` of `chips()[chip].fans`.
    virtual HwmonFanSpeeds fanSpeeds(std::size_t chip, std::size_t sensor) = 0;
    /// Sensor `sensor` of `chips()[chip].powers`, in microwatts; absent when unreadable.
    virtual std::optional<std::uint64_t> powerMicrowatts(std::size_t chip, std::size_t sensor) = 0;
    /// The counter of `raplDomains()[domain]`; absent when unreadable (it is often root's only).
    virtual std::optional<EnergySample> energy(std::size_t domain) = 0;
};

}  // namespace corvane
