#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QImage>
#include <QPainter>

#include <unistd.h>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include "CorvaneAgent/MenuBarMeter.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/JSONFileSettingsStore.h"
#include "CorvaneShared/MeterSettings.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneShared/UI/StatusMetricView.h"
#include "CorvaneShared/UI/SvgSymbols.h"
#include "Platform/Linux/LinuxSystemStatistics.h"
#include "bench/BenchRuntime.h"

namespace corvane {
namespace {

// Fonts and symbols need the application object; the meters are drawn without a display.
void ensureGuiApplication() {
    static int argc = 1;
    static char name[] = "corvane-bench";
    static char* argv[] = {name, nullptr};
    if (QGuiApplication::instance() == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 0);
        static QGuiApplication application(argc, argv);
    }
}

/// The agent's situation: factory defaults, migrated accents, settings read afresh on every
/// call, and a monitor refreshed twice on the real /proc, so every meter has readings to show.
struct MeterFixture {
    explicit MeterFixture(SettingsStore& settings)
        : monitor(SystemMonitor::create({
              .settings = settings,
              .runtime = runtime.runtime(),
              .statistics = std::make_unique<LinuxSystemStatistics>(),
          })),
          cores(static_cast<int>(std::max<long>(1, sysconf(_SC_NPROCESSORS_ONLN)))),
          sources{
              .layout = {settings, SvgSymbols::shared(), [this] { return cores; }},
              .units = {settings, [] { return std::string("en"); },
                        [](std::string_view key) { return std::string(key); }, &std::getenv},
          } {
        settings.registerDefaults(SharedSettings::factoryDefaults());
        MeterSettings::migrateAccents(settings);
        monitor->refresh();
        monitor->refresh();
    }

    BenchRuntime runtime;
    std::shared_ptr<SystemMonitor> monitor;
    int cores;
    MeterSources sources;
};

std::filesystem::path benchDirectory() {
    return std::filesystem::temp_directory_path() /
           ("corvane-meter-bench-" + std::to_string(::getpid()));
}

void signaturesOfFourMeters(benchmark::State& state, SettingsStore& settings) {
    ensureGuiApplication();
    MeterFixture fixture(settings);
    for (auto _ : state) {
        for (MonitorSection section : allMonitorSections) {
            benchmark::DoNotOptimize(
                drawSignature(section, fixture.monitor.get(), fixture.sources));
        }
    }
}

/// What the status bar does after every refresh: the four signatures, settings read from the
/// settings file (one stat per read).
void BM_FourDrawSignatures(benchmark::State& state) {
    const auto directory = benchDirectory();
    {
        JSONFileSettingsStore settings(directory / "bench.json");
        signaturesOfFourMeters(state, settings);
    }
    std::filesystem::remove_all(directory);
}
BENCHMARK(BM_FourDrawSignatures);

/// The same with the settings in memory: the signatures' own share.
void BM_FourDrawSignaturesInMemorySettings(benchmark::State& state) {
    InMemorySettingsStore settings;
    signaturesOfFourMeters(state, settings);
}
BENCHMARK(BM_FourDrawSignaturesInMemorySettings);

/// Drawing one meter at two device pixels per point into an image the size of its item, as a
/// redraw does after its signature changed.
void BM_DrawMeterAtRatio2(benchmark::State& state) {
    ensureGuiApplication();
    InMemorySettingsStore settings;
    MeterFixture fixture(settings);
    const auto section = static_cast<MonitorSection>(state.range(0));
    const MeterContent content = meterContent(section, fixture.monitor.get(), fixture.sources);
    QImage image = StatusMetricView::render(content, 2);
    for (auto _ : state) {
        image.fill(Qt::transparent);
        QPainter painter(&image);
        StatusMetricView::draw(painter, content);
    }
    state.SetLabel(std::string(sectionKey(section)));
}
BENCHMARK(BM_DrawMeterAtRatio2)->DenseRange(0, 3);

}  // namespace
}  // namespace corvane
