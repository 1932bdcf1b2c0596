#include <benchmark/benchmark.h>

#include <unistd.h>
#include <chrono>
#include <filesystem>
#include <memory>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/JSONFileSettingsStore.h"
#include "CorvaneShared/SharedSettings.h"
#include "Platform/Linux/LinuxSystemStatistics.h"
#include "bench/BenchRuntime.h"

namespace corvane {
namespace {

/// One refresh of the monitor on the real /proc, with settings read from a real settings file
/// (the plan reads six keys per refresh).
void BM_MonitorRefresh(benchmark::State& state) {
    const auto directory =
        std::filesystem::temp_directory_path() / ("corvane-bench-" + std::to_string(::getpid()));
    JSONFileSettingsStore settings(directory / "bench.json");
    settings.registerDefaults(SharedSettings::factoryDefaults());
    settings.set("cpuReadout", "usage");
    BenchRuntime runtime;
    auto monitor = SystemMonitor::create({
        .settings = settings,
        .runtime = runtime.runtime(),
        .statistics = std::make_unique<LinuxSystemStatistics>(),
    });
    for (auto _ : state) {
        monitor->refresh();
    }
    benchmark::DoNotOptimize(monitor->fields().cpuUsage);
    std::filesystem::remove_all(directory);
}
BENCHMARK(BM_MonitorRefresh);

}  // namespace
}  // namespace corvane
