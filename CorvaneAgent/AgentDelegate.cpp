#include "CorvaneAgent/AgentDelegate.h"

#include <algorithm>
#include <string>
#include <utility>

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/MeterSettings.h"
#include "CorvaneShared/SharedSettings.h"
#include "Platform/Log.h"
#include "Platform/Runtime.h"
#include "Platform/SignalBus.h"

namespace corvane {

namespace {

bool isEarlier(const AgentInstance& other, const AgentInstance& own) {
    if (!other.launchDate || !own.launchDate || *other.launchDate == *own.launchDate) {
        return other.pid < own.pid;
    }
    return *other.launchDate < *own.launchDate;
}

}  // namespace

bool shouldYieldToAnEarlierInstance(std::int32_t me,
                                    const std::vector<ProcessScan::Entry>& agents) {
    const auto mine = std::ranges::find(agents, me, &ProcessScan::Entry::pid);
    if (mine == agents.end()) {
        return false;
    }
    const AgentInstance own{.pid = me, .launchDate = mine->started};
    return std::ranges::any_of(agents, [&](const ProcessScan::Entry& entry) {
        return entry.pid != me && isEarlier({.pid = entry.pid, .launchDate = entry.started}, own);
    });
}

AgentDelegate::AgentDelegate(Services services)
    : services(std::move(services)), signalListener(this->services.bus, this->services.suite) {}

AgentDelegate::~AgentDelegate() = default;

AgentDelegate::Launch AgentDelegate::applicationDidFinishLaunching() {
    SettingsStore& settings = services.settings;
    settings.registerDefaults(SharedSettings::factoryDefaults());
    MeterSettings::migrateAccents(settings);

    if (!services.isUnitTestHost) {
        // The single-instance check goes first, so that a second copy says why it really
        // leaves even when the switch is off as well.
        if (services.shouldYieldToAnEarlierInstance()) {
            services.log.write(LogLevel::standard,
                               "another copy of this install is already up; exiting");
            terminate();
            return Launch::yielded;
        }
        if (!settings.boolean("agentEnabled")) {
            services.log.write(LogLevel::standard, "the master switch is off; exiting");
            terminate();
            return Launch::switchedOff;
        }
    }
    services.log.write(LogLevel::standard, "up, pid " + std::to_string(services.processId));
    signalListener.listen(SharedSettings::Signal::quitAgent, [this] { terminate(); });
    if (services.isUnitTestHost) {
        return Launch::unitTestHost;
    }

    systemMonitor = services.makeMonitor();
    if (services.observeSettingsChanges) {
        intervalUpdates = services.observeSettingsChanges([monitor = std::weak_ptr(systemMonitor)] {
            if (const auto live = monitor.lock()) {
                live->applyInterval();
            }
        });
    }
    if (services.makeMenuBar) {
        const SettingsChangeObserver noChanges = [](const std::function<void()>&) {
            return Subscription();
        };
        menuBar = services.makeMenuBar(*systemMonitor, services.observeSettingsChanges
                                                           ? services.observeSettingsChanges
                                                           : noChanges);
    }
    if (services.startUpdates) {
        updates = services.startUpdates();
    }
    signalListener.listen(SharedSettings::Signal::settings, [this] { settingsSignalArrived(); });
    return Launch::running;
}

void AgentDelegate::relaunch() {
    if (terminating) {
        return;
    }
    if (services.launch) {
        // Ignored on purpose: a copy that cannot start again must still make way.
        static_cast<void>(services.launch(
            relaunchCommand(services.processId, services.executable, services.arguments)));
    }
    terminate();
}

// A storm of posts is answered once: deliveries already waiting run before the queued answer.
void AgentDelegate::settingsSignalArrived() {
    if (settingsAnswerQueued) {
        return;
    }
    settingsAnswerQueued = true;
    services.mainQueue.post([weakSelf = std::weak_ptr(self)] {
        if (const auto live = weakSelf.lock()) {
            (*live)->answerSettingsSignal();
        }
    });
}

void AgentDelegate::answerSettingsSignal() {
    settingsAnswerQueued = false;
    if (terminating) {
        return;
    }
    const bool busy = updates && updates->isBusy();
    if (services.languageIsStale && services.languageIsStale() && !busy) {
        if (services.applyLanguageChoice) {
            services.applyLanguageChoice();
        }
        relaunch();
        return;
    }
    if (menuBar) {
        menuBar->applyMeterSettings();
    }
}

void AgentDelegate::terminate() {
    terminating = true;
    if (services.terminate) {
        services.terminate();
    }
}

}  // namespace corvane
