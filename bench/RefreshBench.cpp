#include <benchmark/benchmark.h>

#include <unistd.h>
#include <chrono>
#include <filesystem>
#include <memory>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/JSONFileSettingsStore.h"
#include "CorvaneShared/SharedSettings.h"
#include "Platform/Linux/LinuxSystemStatistics.h"

namespace corvane {
namespace {

/// Drives refresh() by hand: the clock is real, timers and queues are never used because the
/// benchmark calls refresh() itself and attaches no background source.
class BenchRuntime final : public Clock, public TimerFactory, public MainQueue, public TaskRunner {
public:
    Runtime runtime() { return {*this, *this, *this, *this}; }
    TimePoint now() const override { return std::chrono::steady_clock::now(); }
    std::unique_ptr<Timer> startRepeating(double, double, std::function<void()>) override {
        return nullptr;
    }
    void post(std::function<void()>) override {}
    void run(std::function<void()>) override {}
};

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
