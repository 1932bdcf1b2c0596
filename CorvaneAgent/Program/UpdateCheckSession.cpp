#include "CorvaneAgent/Program/UpdateCheckSession.h"

#include <QCoreApplication>
#include <QTimer>

#include <cstdio>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "CorvaneAgent/BundleVersion.h"
#include "CorvaneAgent/Program/AgentUpdates.h"
#include "CorvaneShared/BundleDirectory.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneShared/UpdateOffer.h"
#include "Platform/Linux/ExecutablePath.h"
#include "Platform/Qt/QtDBusSignalBus.h"
#include "Platform/Qt/Updates/UpdateUserDriver.h"

namespace corvane {

namespace {

/// The user of a headless check: answers an offer at once and remembers what happened.
class ReportingDriver final : public UpdateUserDriver {
public:
    explicit ReportingDriver(bool install) : install(install) {}

    void showUpdateFound(const UpdateItem& item, const std::string&,
                         std::function<void(UpdateUserChoice)> reply) override {
        offer = UpdateOffer::name(item.displayVersionString, item.versionString);
        reply(install ? UpdateUserChoice::install : UpdateUserChoice::dismiss);
    }
    void showUpToDate(const std::string&) override {}
    void showDownloadStarted(const UpdateItem&, std::function<void()>) override {}
    void showDownloadProgress(std::uint64_t, std::uint64_t) override {}
    void showInstalling() override {}
    void showInstalled(const UpdateItem&) override { installed = true; }
    void showError(const std::string& description) override { error = description; }
    void finish() override {
        // Queued: the updater is still unwinding its cycle.
        QTimer::singleShot(0, [] { QCoreApplication::quit(); });
    }

    bool install;
    std::optional<std::string> offer;
    bool installed = false;
    std::optional<std::string> error;
};

int report(const std::string& version, const ReportingDriver& driver) {
    const nlohmann::ordered_json line = {
        {"version", version},
        {"offer", driver.offer ? nlohmann::json(*driver.offer) : nlohmann::json(nullptr)},
        {"installed", driver.installed},
        {"error", driver.error ? nlohmann::json(*driver.error) : nlohmann::json(nullptr)},
    };
    const std::string text =
        line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
    std::printf("%s\n", text.c_str());
    std::fflush(stdout);
    return driver.error ? 1 : 0;
}

}  // namespace

int runUpdateCheck(bool install) {
    SharedSettings::store().registerDefaults(SharedSettings::factoryDefaults());
    const auto executable = currentExecutablePath();
    const auto bundle =
        executable ? BundleDirectory::bundleOfExecutable(*executable) : std::nullopt;
    const std::string version =
        BundleVersion::text(bundle ? BundleDirectory::readInfo(*bundle) : std::nullopt);

    QtDBusSignalBus bus;
    ReportingDriver driver(install);
    std::optional<std::string> lastLine;
    AgentUpdates updates({
        .agentBundle = bundle,
        .bus = bus,
        .driver = driver,
        .relaunchArguments = {"--update-check"},
        .onLog = [&lastLine](LogLevel, std::string_view line) { lastLine = line; },
    });
    UpdateController& controller = updates.controller();
    controller.start();
    if (!controller.checkForUpdatesNow()) {
        // Off for this run: the log line says why.
        driver.error = lastLine.value_or("updates cannot be checked now");
        return report(version, driver);
    }
    QCoreApplication::exec();
    const int status = report(version, driver);
    bus.flush();
    return status;
}

}  // namespace corvane
