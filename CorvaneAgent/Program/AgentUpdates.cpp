#include "CorvaneAgent/Program/AgentUpdates.h"

#include <QEventLoop>
#include <QStandardPaths>
#include <QTimer>

#include <chrono>
#include <cstdlib>

#include "CorvaneShared/BuildInfo.h"
#include "CorvaneShared/SharedSettings.h"
#include "Platform/Linux/JournalLog.h"
#include "Platform/Qt/QtProcessLauncher.h"
#include "Platform/Qt/Updates/FeedUpdater.h"
#include "Platform/Updates/ArchiveModule.h"
#include "Platform/Updates/BundleProcesses.h"

namespace corvane {

namespace {

class SteadyClock final : public Clock {
public:
    TimePoint now() const override { return std::chrono::steady_clock::now(); }
};

/// Writes to the journal and shows each line to an onlooker as well.
class WatchedLog final : public Log {
public:
    WatchedLog(std::function<void(LogLevel, std::string_view)> onLog)
        : journal(std::string(buildinfo::agentBundleIdentifier), "updates"),
          onLog(std::move(onLog)) {}

    void write(LogLevel level, std::string_view message) override {
        journal.write(level, message);
        if (onLog) {
            onLog(level, message);
        }
    }

private:
    JournalLog journal;
    std::function<void(LogLevel, std::string_view)> onLog;
};

std::filesystem::path downloadFolder() {
    const QString cache = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return std::filesystem::path(cache.toStdString()) / "corvane" / "updates";
}

}  // namespace

class AgentUpdates::Services {
public:
    explicit Services(Options options) : options(std::move(options)), log(this->options.onLog) {}

    Options options;
    WatchedLog log;
    SteadyClock clock;
    BundleProcesses applications;
};

AgentUpdates::AgentUpdates(Options options)
    : services(std::make_unique<Services>(std::move(options))) {
    Services& parts = *services;
    updateController = std::make_unique<UpdateController>(UpdateController::Services{
        .settings = SharedSettings::store(),
        .bus = parts.options.bus,
        .log = parts.log,
        .environment = [](const char* name) -> const char* { return std::getenv(name); },
        .agentBundle = parts.options.agentBundle,
        .makeUpdater = [&parts](const UpdaterSetup& setup) -> std::unique_ptr<Updater> {
            return std::make_unique<FeedUpdater>(FeedUpdater::Services{
                .setup = setup,
                .driver = parts.options.driver,
                .ownStore = SharedSettings::standardStore(),
                .cacheDirectory = downloadFolder(),
                .archiveModule = parts.options.agentBundle
                                     ? ArchiveModule::pathIn(*parts.options.agentBundle)
                                     : std::filesystem::path(),
                .launch = launchDetached,
                .relaunchArguments = parts.options.relaunchArguments,
                .quit = parts.options.quit,
            });
        },
        .applications = parts.applications,
        .clock = parts.clock,
        .runEventsFor =
            [](double seconds) {
                QEventLoop loop;
                QTimer::singleShot(std::chrono::milliseconds(static_cast<int>(seconds * 1000)),
                                   &loop, &QEventLoop::quit);
                loop.exec();
            },
    });
}

// The controller goes first: its updater talks to the services until it is gone.
AgentUpdates::~AgentUpdates() {
    updateController.reset();
}

}  // namespace corvane
