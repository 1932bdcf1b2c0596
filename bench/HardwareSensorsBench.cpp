// The cost of one sensor pass (temperatures, fans, power) over the hwmon and powercap files of
// the AMD desktop fixture tree: six CPU and GPU temperatures for `menuBar`, eighteen for
// `full`, six fans and two power channels either way. The tree lies on an ordinary file
// system, so a pass costs the opens and reads of plain files; real sysfs adds the drivers' own
// time (an I2C or Super I/O read for some chips, cached by most drivers for a second or more).
// Discovery, once at start, is measured too.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>

#include "CorvaneAgent/HardwareSensors.h"
#include "Platform/Linux/LinuxHardwareMonitor.h"

namespace corvane {
namespace {

constexpr const char* amdDesktop = CORVANE_FIXTURES "/amd-desktop/sys";

void BM_HardwareSensorsDiscovery(benchmark::State& state) {
    for (auto _ : state) {
        auto sensors = HardwareSensors::create(std::make_unique<LinuxHardwareMonitor>(amdDesktop));
        benchmark::DoNotOptimize(sensors);
    }
}
BENCHMARK(BM_HardwareSensorsDiscovery)->Unit(benchmark::kMicrosecond);

void sensorPass(benchmark::State& state, SamplingPlan::SMCScope scope) {
    auto sensors = HardwareSensors::create(std::make_unique<LinuxHardwareMonitor>(amdDesktop));
    if (!sensors) {
        std::abort();
    }
    for (auto _ : state) {
        SensorReadings readings;
        readings.temperatures = sensors->temperatures(scope);
        readings.fans = sensors->fans();
        readings.power = sensors->power();
        benchmark::DoNotOptimize(readings);
    }
}

void BM_HardwareSensorsMenuBarPass(benchmark::State& state) {
    sensorPass(state, SamplingPlan::SMCScope::menuBar);
}
BENCHMARK(BM_HardwareSensorsMenuBarPass)->Unit(benchmark::kMicrosecond);

void BM_HardwareSensorsFullPass(benchmark::State& state) {
    sensorPass(state, SamplingPlan::SMCScope::full);
}
BENCHMARK(BM_HardwareSensorsFullPass)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace corvane
