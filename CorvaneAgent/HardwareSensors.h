#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneAgent/SamplingPlan.h"
#include "CorvaneAgent/SensorReadings.h"
#include "CorvaneAgent/SensorSource.h"
#include "Platform/HardwareMonitor.h"

namespace corvane {

/// What a hwmon chip's temperature sensor measures, from the chip's driver name and, where the
/// driver says too little, the sensor's label (docs/linux-port.md has the table). applesmc
/// labels are controller keys and are classified as the controller's keys are.
[[nodiscard]] SensorCategory hwmonCategory(std::string_view chipName, std::string_view label);

/// The key of a temperature: "<chip> <label>", or "<chip> temp<N>" without a label; `chip` is
/// the chip's name, followed by "@<distinction>" when several chips share the name. An applesmc
/// sensor's key is its label alone, the controller key the controller source reports too.
[[nodiscard]] std::string hwmonTemperatureKey(std::string_view chip, std::string_view distinction,
                                              const HwmonSensor& sensor);

/// The key of a fan: "<chip> <label>" or "<chip> fan<N>", as for temperatures; an applesmc fan's
/// is the controller key of its speed ("F0Ac" for fan1).
[[nodiscard]] std::string hwmonFanKey(std::string_view chip, std::string_view distinction,
                                      const HwmonSensor& sensor);

/// Mean watts between two readings of an energy counter that starts again from 0 after
/// `maxEnergyRangeMicrojoules`. Absent when no time passed, when the counter went backwards and
/// its range is unknown, or when so much time passed that the counter could have gone round
/// more than once at the highest plausible power (the result would be too low).
[[nodiscard]] std::optional<double> averageWatts(
    const EnergySample& previous, const EnergySample& current,
    std::optional<std::uint64_t> maxEnergyRangeMicrojoules);

/// Temperatures, fans and power from the kernel's hardware-monitoring chips and RAPL energy
/// counters: the sensor source of ordinary PCs, and of Intel Macs whose controller cannot be
/// opened. Sorts the chips' sensors once, when created, and reads them on every pass. CPU power
/// is the energy used between two passes, so the first pass has none. No lock: one sensor pass
/// at a time.
class HardwareSensors final : public SensorSource {
public:
    /// Where the system's draw comes from when the platform (psys) energy counter is missing or
    /// gives nothing: watts, or absent. Called on the sensor pass's thread.
    using SystemDraw = std::function<std::optional<double>()>;

    /// Absent when `monitor` is missing or found no chip at all.
    static std::unique_ptr<HardwareSensors> create(std::unique_ptr<HardwareMonitor> monitor,
                                                   SystemDraw systemDraw = {});

    /// Plausible temperatures of the CPU and GPU sensors (`menuBar`; of an applesmc chip only
    /// the keys the controller source reads there too), then of every other sensor (`full`),
    /// each in chip and sensor order; nothing for `none`.
    std::vector<TemperatureReading> temperatures(SamplingPlan::SMCScope scope) override;
    /// Every fan below 20000 rpm, with its limits when plausible; `index` is the fan's place
    /// among all fans found.
    std::vector<FanReading> fans() override;
    /// System (psys, else `SystemDraw`), CPU (the RAPL packages together) and GPU (amdgpu),
    /// each from 0 up to below 1000 watts.
    std::vector<PowerReading> power() override;

private:
    struct Sensor {
        std::size_t chip = 0;
        std::size_t sensor = 0;
        std::string key;
        SensorCategory category = SensorCategory::other;
    };
    struct EnergyCounter {
        std::size_t domain = 0;
        std::optional<std::uint64_t> maxEnergyRangeMicrojoules;
        std::optional<EnergySample> previous;
    };

    HardwareSensors(std::unique_ptr<HardwareMonitor> monitor, SystemDraw systemDraw);
    void sortSensors();
    void findPowerSources();
    /// Watts since the counter's previous reading, which this reading replaces.
    std::optional<double> advance(EnergyCounter& counter);
    std::optional<double> packageWatts();
    std::optional<double> systemWatts();
    std::optional<double> gpuWatts();

    std::unique_ptr<HardwareMonitor> monitor;
    SystemDraw systemDraw;
    /// CPU and GPU sensors first, the `menuBar` selection; then the rest.
    std::vector<Sensor> temperatureSensors;
    std::size_t menuBarCount = 0;
    std::vector<Sensor> fanSensors;
    std::vector<EnergyCounter> packages;
    std::optional<EnergyCounter> platform;
    std::optional<Sensor> gpuPower;
};

}  // namespace corvane
