#include "CorvaneAgent/UI/HeadlessSession.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/MonitorSnapshot.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneAgent/UI/MachineSources.h"
#include "Platform/Qt/QtRuntime.h"

namespace corvane {

namespace {

constexpr int defaultSnapshotRefreshes = 2;

void printLine(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    std::fputc('\n', stdout);
    // Flushed per line, so a reader on a pipe sees each refresh as it happens.
    std::fflush(stdout);
}

}  // namespace

int runHeadless(const AgentOptions& options) {
    SettingsStore& settings = SharedSettings::store();
    settings.registerDefaults(SharedSettings::factoryDefaults());

    auto sensors = chooseSensorSource(options, std::getenv("CORVANE_SMC_TABLE"));
    if (const auto* error = std::get_if<SourceError>(&sensors)) {
        std::fprintf(stderr, "corvane-agent: %s\n", error->message.c_str());
        return 2;
    }

    QtRuntime runtime;
    auto monitor = SystemMonitor::create(
        machineServices(options, settings, runtime.runtime(),
                        std::get<std::shared_ptr<SensorSource>>(std::move(sensors))));
    for (MonitorSection section : options.openSections) {
        monitor->beginDetailedSampling(section);
    }

    const bool isSnapshot = options.mode == AgentOptions::Mode::snapshot;
    const std::optional<int> limit =
        isSnapshot ? options.refreshes.value_or(defaultSnapshotRefreshes) : options.refreshes;
    int refreshes = 0;
    SystemMonitor& model = *monitor;
    monitor->setOnRefresh([&] {
        ++refreshes;
        if (!isSnapshot) {
            printLine(monitorSnapshot(model).dump());
        }
        if (!limit || refreshes < *limit) {
            return;
        }
        // No further refresh may start work of its own while we wait for the last results.
        model.stopTimer();
        model.whenBackgroundWorkFinished([&] {
            if (isSnapshot) {
                printLine(monitorSnapshot(model).dump(2));
            }
            // Queued, so that it also ends a loop that has not started yet.
            runtime.post([] { QCoreApplication::quit(); });
        });
    });
    monitor->start();
    return QCoreApplication::exec();
}

}  // namespace corvane
