#include "CorvaneAgent/UpdateController.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <utility>

#include "CorvaneAgent/BundleVersion.h"
#include "CorvaneAgent/UpdatePolicy.h"
#include "CorvaneShared/BundleDirectory.h"
#include "CorvaneShared/BundleEmbedding.h"
#include "CorvaneShared/UpdateOffer.h"

namespace corvane {

namespace {

namespace fs = std::filesystem;
using SharedSettings::Signal;

constexpr const char* automaticChecksKey = "updatesCheckAutomatically";
constexpr const char* canCheckKey = "updaterCanCheck";
constexpr const char* offerKey = "updatesAvailable";

// The variables the policy looks at, as a map; the rest of the environment is no business of
// the updater.
std::map<std::string, std::string> policyEnvironment(
    const SharedSettings::EnvironmentLookup& environment) {
    std::map<std::string, std::string> variables;
    if (!environment) {
        return variables;
    }
    for (const char* name : {UpdatePolicy::disableVariable, UpdatePolicy::uiTestingVariable,
                             UpdatePolicy::unitTestVariable}) {
        if (const char* value = environment(name)) {
            variables.emplace(name, value);
        }
    }
    return variables;
}

}  // namespace

UpdateController::UpdateController(Services services) : services(std::move(services)) {}

UpdateController::~UpdateController() = default;

std::optional<fs::path> UpdateController::hostBundleURL(const fs::path& bundleURL) {
    return embeddingAppBundle(bundleURL);
}

void UpdateController::start() {
    if (std::exchange(started, true)) {
        return;
    }
    hostBundle = services.agentBundle ? hostBundleURL(*services.agentBundle) : std::nullopt;
    const std::optional<BundleInfo> hostInfo =
        hostBundle ? BundleDirectory::readInfo(*hostBundle) : std::nullopt;
    if (!hostInfo) {
        services.log.write(LogLevel::standard, notEmbeddedMessage);
        return;
    }
    const std::string publicKey = hostInfo->publicEDKey.value_or("");
    if (UpdatePolicy::isDisabled(policyEnvironment(services.environment), publicKey)) {
        services.log.write(LogLevel::standard, disabledMessage);
        services.settings.set(canCheckKey, false);
        return;
    }

    std::unique_ptr<Updater> created = services.makeUpdater(UpdaterSetup{
        .hostBundle = *hostBundle,
        .applicationBundle = *services.agentBundle,
        .delegate = *this,
    });
    if (!created) {
        return;
    }
    if (const std::optional<std::string> error = created->startUpdater()) {
        services.log.write(LogLevel::error, "Sparkle did not start: " + *error);
        return;
    }
    updater = std::move(created);

    signalListener.emplace(services.bus, services.suite);
    // The listener dies with the controller, so no handler can run after it is gone.
    signalListener->listen(Signal::checkForUpdates, [this] { checkForUpdatesNow(); });
    retireSpentOffer();
    signalListener->listen(Signal::settings, [this] { synchronizeAutomaticChecks(); });
    synchronizeAutomaticChecks();
    observations.push_back(updater->observeCanCheckForUpdates(
        [this](bool canCheck) { services.settings.set(canCheckKey, canCheck); }));
}

bool UpdateController::checkForUpdatesNow() {
    if (!updater || !updater->canCheckForUpdates()) {
        return false;
    }
    if (services.bringToFront) {
        services.bringToFront();
    }
    updater->checkForUpdates();
    return true;
}

void UpdateController::synchronizeAutomaticChecks() {
    if (!updater) {
        return;
    }
    const bool wanted = services.settings.boolean(automaticChecksKey);
    if (wanted != updater->automaticallyChecksForUpdates()) {
        updater->setAutomaticallyChecksForUpdates(wanted);
    }
}

std::string UpdateController::runningVersion() const {
    return BundleVersion::text(
        services.agentBundle ? BundleDirectory::readInfo(*services.agentBundle) : std::nullopt);
}

void UpdateController::publish(const std::optional<std::string>& offer) {
    if (offer) {
        services.settings.set(offerKey, *offer);
    } else {
        services.settings.remove(offerKey);
    }
    SharedSettings::post(services.bus, Signal::updateAvailable, services.suite);
}

void UpdateController::retireSpentOffer() {
    const std::optional<std::string> offer = services.settings.string(offerKey);
    if (!offer) {
        return;
    }
    const std::string current = runningVersion();
    const std::optional<std::int64_t> offeredBuild = UpdateOffer::buildNumber(*offer);
    const std::optional<std::int64_t> currentBuild = UpdateOffer::buildNumber(current);
    const bool spent =
        offeredBuild && currentBuild ? *currentBuild >= *offeredBuild : *offer == current;
    if (spent) {
        publish(std::nullopt);
    }
}

void UpdateController::didFindValidUpdate(const UpdateItem& item) {
    publish(UpdateOffer::name(item.displayVersionString, item.versionString));
    services.log.write(LogLevel::standard, "update available: " + item.displayVersionString);
}

void UpdateController::updaterDidNotFindUpdate(const std::string& reason) {
    publish(std::nullopt);
    services.log.write(LogLevel::standard, "no update: " + reason);
}

void UpdateController::didAbortWithError(const std::string& description) {
    services.log.write(LogLevel::error, "update aborted: " + description);
}

void UpdateController::userDidMake(UpdateUserChoice choice) {
    if (choice == UpdateUserChoice::skip) {
        publish(std::nullopt);
    }
}

void UpdateController::willDownloadUpdate() {
    busy = true;
}

void UpdateController::didFinishUpdateCycle() {
    busy = false;
}

bool UpdateController::updaterShouldRelaunchApplication() {
    return true;
}

void UpdateController::willInstallUpdate() {
    if (!hostBundle) {
        return;
    }
    RunningApplications& applications = services.applications;
    const std::vector<pid_t> running = applications.runningFrom(*hostBundle);
    if (running.empty()) {
        return;
    }
    for (pid_t process : running) {
        applications.terminate(process);
    }
    auto allTerminated = [&] {
        return std::all_of(running.begin(), running.end(),
                           [&](pid_t process) { return applications.isTerminated(process); });
    };
    const auto deadline =
        services.clock.now() + std::chrono::duration_cast<std::chrono::nanoseconds>(
                                   std::chrono::duration<double>(terminationGraceSeconds));
    while (services.clock.now() < deadline && !allTerminated()) {
        services.runEventsFor(terminationPollSeconds);
    }
    for (pid_t process : running) {
        if (!applications.isTerminated(process)) {
            applications.forceTerminate(process);
        }
    }
}

}  // namespace corvane
