#include "CorvaneAgent/Headless/HeadlessSession.h"

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/Headless/JSONLineWriter.h"
#include "CorvaneAgent/Headless/MachineSources.h"
#include "CorvaneAgent/MonitorSnapshot.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/SharedSettings.h"

namespace corvane {

namespace {

// Runs a stream's "background" work on the main thread, queued behind the refresh that started
// it. A stream draws nothing that must stay responsive, so a thread handoff per task buys
// nothing: this way the event loop wakes once per refresh, no pool thread wakes at all, and
// none is started (nor its stack paid for).
class DeferredTaskRunner final : public TaskRunner {
public:
    explicit DeferredTaskRunner(MainQueue& queue) : queue(queue) {}
    void run(std::function<void()> work) override { queue.post(std::move(work)); }

private:
    MainQueue& queue;
};

}  // namespace

int runHeadless(HeadlessLoop& loop, const AgentOptions& options, const AppLanguage& language,
                SampledModelConsumer consumer) {
    SettingsStore& settings = SharedSettings::store();
    settings.registerDefaults(SharedSettings::factoryDefaults());

    auto sensors = chooseSensorSource(options, std::getenv("CORVANE_SMC_TABLE"));
    if (const auto* error = std::get_if<SourceError>(&sensors)) {
        std::fprintf(stderr, "corvane-agent: %s\n", error->message.c_str());
        return 2;
    }

    // A render samples exactly as a snapshot does.
    const bool isSnapshot = options.mode != AgentOptions::Mode::stream;
    const Runtime runtime = loop.runtime();
    DeferredTaskRunner deferredTasks(runtime.mainQueue);
    TaskRunner& tasks = isSnapshot ? runtime.tasks : deferredTasks;
    MonitorServices services = machineServices(
        options, settings, {runtime.clock, runtime.timers, runtime.mainQueue, tasks},
        std::get<std::shared_ptr<SensorSource>>(std::move(sensors)));
    // A snapshot is a one-off reading that has to finish even behind a locked screen; a stream
    // runs like the agent and rests while nobody can see its readings.
    if (!isSnapshot) {
        services.displayState = loop.makeDisplayState();
    }
    services.translate = [&language](std::string_view key) { return language.string(key); };
    auto monitor = SystemMonitor::create(std::move(services));
    for (MonitorSection section : options.openSections) {
        monitor->beginDetailedSampling(section);
    }

    const std::optional<int> limit =
        isSnapshot ? options.refreshes.value_or(defaultSnapshotRefreshes) : options.refreshes;
    int refreshes = 0;
    int status = 0;
    JSONLineWriter lines;
    SystemMonitor& model = *monitor;
    monitor->setOnRefresh([&] {
        ++refreshes;
        if (!isSnapshot) {
            lines.write(monitorSnapshot(model), -1);
        }
        if (!limit || refreshes < *limit) {
            return;
        }
        // No further refresh may start work of its own while we wait for the last results.
        model.stopTimer();
        model.whenBackgroundWorkFinished([&] {
            if (isSnapshot && consumer) {
                status = consumer(model, settings);
            } else if (isSnapshot) {
                lines.write(monitorSnapshot(model), 2);
            }
            // Queued, so that it also ends a loop that has not started yet.
            runtime.mainQueue.post([&loop, &status] { loop.quit(status); });
        });
    });
    // From the loop, between two refreshes, so a line is never cut in the middle.
    loop.handleTerminationSignals(
        [&loop, isSnapshot](int signal) { loop.quit(isSnapshot ? 128 + signal : 0); });
    monitor->start();
    return loop.exec();
}

}  // namespace corvane
