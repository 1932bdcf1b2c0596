#include "CorvaneAgent/Program/HeadlessSession.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/MonitorSnapshot.h"
#include "CorvaneAgent/Program/MachineSources.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/SharedSettings.h"
#include "Platform/Qt/QtRuntime.h"
#include "Platform/Qt/SessionDisplayState.h"

namespace corvane {

namespace {

// Names come from the system (volume labels, process names) and need not be valid UTF-8; a
// replacement character beats losing the whole reading.
std::string jsonText(const nlohmann::ordered_json& json, int indent) {
    return json.dump(indent, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
}

void printLine(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    std::fputc('\n', stdout);
    // Flushed per line, so a reader on a pipe sees each refresh as it happens.
    std::fflush(stdout);
}

}  // namespace

int runHeadless(const AgentOptions& options, const AppLanguage& language) {
    SettingsStore& settings = SharedSettings::store();
    settings.registerDefaults(SharedSettings::factoryDefaults());

    auto sensors = chooseSensorSource(options, std::getenv("CORVANE_SMC_TABLE"));
    if (const auto* error = std::get_if<SourceError>(&sensors)) {
        std::fprintf(stderr, "corvane-agent: %s\n", error->message.c_str());
        return 2;
    }

    const bool isSnapshot = options.mode == AgentOptions::Mode::snapshot;
    QtRuntime runtime;
    MonitorServices services =
        machineServices(options, settings, runtime.runtime(),
                        std::get<std::shared_ptr<SensorSource>>(std::move(sensors)));
    // A snapshot is a one-off reading that has to finish even behind a locked screen; a stream
    // runs like the agent and rests while nobody can see its readings.
    if (!isSnapshot) {
        services.displayState = std::make_unique<SessionDisplayState>();
    }
    services.translate = [&language](std::string_view key) { return language.string(key); };
    auto monitor = SystemMonitor::create(std::move(services));
    for (MonitorSection section : options.openSections) {
        monitor->beginDetailedSampling(section);
    }

    const std::optional<int> limit =
        isSnapshot ? options.refreshes.value_or(defaultSnapshotRefreshes) : options.refreshes;
    int refreshes = 0;
    SystemMonitor& model = *monitor;
    monitor->setOnRefresh([&] {
        ++refreshes;
        if (!isSnapshot) {
            printLine(jsonText(monitorSnapshot(model), -1));
        }
        if (!limit || refreshes < *limit) {
            return;
        }
        // No further refresh may start work of its own while we wait for the last results.
        model.stopTimer();
        model.whenBackgroundWorkFinished([&] {
            if (isSnapshot) {
                printLine(jsonText(monitorSnapshot(model), 2));
            }
            // Queued, so that it also ends a loop that has not started yet.
            runtime.post([] { QCoreApplication::quit(); });
        });
    });
    monitor->start();
    return QCoreApplication::exec();
}

}  // namespace corvane
