#include <QApplication>

#include <benchmark/benchmark.h>

#include <unistd.h>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneAgent/UI/MenuBarViews.h"
#include "CorvaneShared/JSONFileSettingsStore.h"
#include "CorvaneShared/SharedSettings.h"
#include "Platform/Linux/LinuxSystemStatistics.h"
#include "bench/BenchRuntime.h"

namespace corvane {
namespace {

QApplication& offscreenApplication() {
    static int argc = 1;
    static char name[] = "corvane-bench";
    static char* argv[] = {name, nullptr};
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    static QApplication application(argc, argv);
    return application;
}

/// One refresh on the real /proc with the section's panel open and shown, including the
/// panel's repaint of what changed; compare with BM_MonitorRefresh, the same refresh without.
void BM_RefreshWithPanelOpen(benchmark::State& state) {
    offscreenApplication();
    const auto section = static_cast<MonitorSection>(state.range(0));
    const auto directory =
        std::filesystem::temp_directory_path() / ("corvane-bench-" + std::to_string(::getpid()));
    JSONFileSettingsStore settings(directory / "bench.json");
    settings.registerDefaults(SharedSettings::factoryDefaults());
    BenchRuntime runtime;
    auto monitor = SystemMonitor::create({
        .settings = settings,
        .runtime = runtime.runtime(),
        .statistics = std::make_unique<LinuxSystemStatistics>(),
    });
    monitor->beginDetailedSampling(section);
    monitor->refresh();
    const PanelEnvironment environment{
        .units = {settings, [] { return std::string("en"); },
                  [](std::string_view key) { return std::string(key); }, &std::getenv},
    };
    std::unique_ptr<MonitorPopover> panel(
        makePanel(section, monitor, PanelMetrics::steps[0], std::nullopt, {}, environment));
    panel->show();
    QApplication::processEvents();
    for (auto _ : state) {
        monitor->refresh();
        QApplication::processEvents();
    }
    state.SetLabel(std::string(sectionKey(section)));
    panel.reset();
    std::filesystem::remove_all(directory);
}
BENCHMARK(BM_RefreshWithPanelOpen)
    ->Arg(static_cast<int>(MonitorSection::cpu))
    ->Arg(static_cast<int>(MonitorSection::memory))
    ->Arg(static_cast<int>(MonitorSection::sensors));

}  // namespace
}  // namespace corvane
