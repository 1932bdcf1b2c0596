#include "CorvaneAgent/Program/AgentSession.h"

#include <QApplication>
#include <QDBusConnection>
#include <QMetaObject>

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/Headless/MachineSources.h"
#include "CorvaneAgent/Program/AgentUpdates.h"
#include "CorvaneAgent/Program/DesktopMenuBar.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/AppLinks.h"
#include "CorvaneShared/BuildInfo.h"
#include "CorvaneShared/ProcessScan.h"
#include "CorvaneShared/SettingsChanges.h"
#include "CorvaneShared/SharedSettings.h"
#include "Platform/Linux/ExecutablePath.h"
#include "Platform/Linux/JournalLog.h"
#include "Platform/Linux/LinuxProcessTable.h"
#include "Platform/Linux/WatchedDisplayState.h"
#include "Platform/Qt/QtDBusSignalBus.h"
#include "Platform/Qt/QtDescriptorWatch.h"
#include "Platform/Qt/QtFileChangeWatcher.h"
#include "Platform/Qt/QtProcessLauncher.h"
#include "Platform/Qt/QtRuntime.h"
#include "Platform/Qt/TerminationSignals.h"
#include "Platform/Qt/Updates/UpdateDialogs.h"

namespace corvane {

namespace {

using namespace std::chrono_literals;

// Long enough to fold the write, rename and lock-file events of one save into one check,
// short enough that a change shows at once.
constexpr auto settingsSettle = 50ms;
// Qt tells nobody when the bus connection drops; a check this rare costs nothing.
constexpr auto busCheckPeriod = 2s;

bool isSet(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

/// The update controller with its windows, started once the menu bar stands.
class AgentUpdatesSession final : public UpdatesSession {
public:
    AgentUpdatesSession(const std::optional<std::filesystem::path>& bundle, SignalBus& bus,
                        const AppLanguage& language, std::vector<std::string> arguments,
                        std::function<void()> quit)
        : dialogs([&language](std::string_view key) { return language.string(key); }),
          updates({.agentBundle = bundle,
                   .bus = bus,
                   .driver = dialogs,
                   .relaunchArguments = std::move(arguments),
                   .quit = std::move(quit)}) {
        updates.controller().start();
    }

    bool isBusy() const override { return controller.isBusy(); }

private:
    UpdateDialogs dialogs;
    AgentUpdates updates;
    const UpdateController& controller = updates.controller();
};

}  // namespace

int runAgent(int& argc, char** argv, const AgentOptions& options, AppLanguage& language,
             const std::optional<std::filesystem::path>& bundle) {
    // QT_QPA_PLATFORM names a platform on purpose (offscreen, for tests); otherwise a menu bar
    // needs a desktop to stand in.
    if (!isSet("QT_QPA_PLATFORM") && !isSet("DISPLAY") && !isSet("WAYLAND_DISPLAY")) {
        std::fputs(
            "corvane-agent: no display to show a menu bar on (DISPLAY and WAYLAND_DISPLAY "
            "are unset); corvane-agent --stream prints the readings instead\n",
            stderr);
        return 1;
    }
    // Panels are placed at screen coordinates, which only X11 (XWayland included) allows.
    if (!isSet("QT_QPA_PLATFORM") && isSet("DISPLAY")) {
        ::setenv("QT_QPA_PLATFORM", "xcb", 1);
    }
    auto sensors = chooseSensorSource(options, std::getenv("CORVANE_SMC_TABLE"));
    if (const auto* error = std::get_if<SourceError>(&sensors)) {
        std::fprintf(stderr, "corvane-agent: %s\n", error->message.c_str());
        return 2;
    }

    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(
        AgentDelegate::applicationShouldTerminateAfterLastWindowClosed());
    // Queued, so that a refusal before the event loop starts still ends it at once.
    const auto quit = [&application] {
        // exit, not quit: Qt's quit first asks every window to close and gives up when one
        // declines, as a shown panel window does.
        QMetaObject::invokeMethod(
            &application, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    };
    JournalLog log(std::string(buildinfo::agentBundleIdentifier), "lifecycle");
    TerminationSignals endingSignals([&](int signal) {
        const char* name = ::sigabbrev_np(signal);
        log.write(LogLevel::standard,
                  std::string("stopping on SIG") + (name != nullptr ? name : "?"));
        quit();
    });
    QtDBusSignalBus bus;
    // The session's bus goes with the desktop session that started it.
    BusLossWatch sessionEnd(QDBusConnection::sessionBus(), busCheckPeriod, [&] {
        log.write(LogLevel::standard, "the session bus is gone; exiting");
        quit();
    });
    QtRuntime runtime;

    SettingsStore& settings = SharedSettings::store();
    SettingsChanges settingsChanges(settings);
    std::unique_ptr<QtFileChangeWatcher> settingsWatch;
    if (const auto& folder = SharedSettings::settingsDirectory()) {
        settingsWatch = std::make_unique<QtFileChangeWatcher>(
            SharedSettings::storeFile(SharedSettings::suiteName(), *folder), settingsSettle,
            [&settingsChanges] { settingsChanges.check(); });
    }

    const AppLinks links(processLinkSources(
        bundle,
        [&bus](SharedSettings::Signal signal) { bus.post(SharedSettings::signalName(signal)); },
        launchDetached));
    MenuBarFactory makeMenuBar = [&](SystemMonitor& monitor,
                                     const SettingsChangeObserver& observeSettingsChanges)
        -> std::unique_ptr<MenuBarSession> {
        auto started = DesktopMenuBar::start({
            .monitor = monitor.shared_from_this(),
            .shared = settings,
            .own = SharedSettings::standardStore(),
            .bus = bus,
            .runtime = runtime.runtime(),
            .observeSettingsChanges = observeSettingsChanges,
            .language = language,
            .request = options.menuBarHost,
            .openSettings = [&links] { links.openSettingsApp(); },
            .quit = quit,
        });
        if (auto* refusal = std::get_if<std::string>(&started)) {
            // An agent nobody can see or quit is no use: say what is missing and end.
            std::fprintf(stderr, "corvane-agent: %s\n", refusal->c_str());
            log.write(LogLevel::standard, *refusal);
            QMetaObject::invokeMethod(
                &application, [] { QCoreApplication::exit(1); }, Qt::QueuedConnection);
            return nullptr;
        }
        return std::move(std::get<std::unique_ptr<DesktopMenuBar>>(started));
    };

    const std::vector<std::string> arguments(argv + 1, argv + argc);
    const auto executable = currentExecutablePath();
    AgentDelegate delegate({
        .settings = settings,
        .bus = bus,
        .suite = SharedSettings::suiteName(),
        .log = log,
        .mainQueue = runtime,
        .processId = static_cast<std::int32_t>(::getpid()),
        .isUnitTestHost = std::getenv(AppLinks::unitTestVariable) != nullptr,
        .shouldYieldToAnEarlierInstance =
            [] {
                const LinuxProcessTable table;
                auto copies =
                    ProcessScan::runningAgents(table, static_cast<std::uint32_t>(::getuid()));
                // A copy streaming readings in a terminal shows no menu bar: no reason to leave.
                std::erase_if(copies, [](const ProcessScan::Entry& copy) {
                    return !runsTheMenuBar(copy.arguments);
                });
                return shouldYieldToAnEarlierInstance(static_cast<std::int32_t>(::getpid()),
                                                      copies);
            },
        .makeMonitor =
            [&] {
                MonitorServices services =
                    machineServices(options, settings, runtime.runtime(),
                                    std::get<std::shared_ptr<SensorSource>>(std::move(sensors)));
                services.displayState = std::make_unique<WatchedDisplayState>(
                    std::make_unique<SessionDisplayState>(), watchDescriptor, runtime);
                services.translate = [&language](std::string_view key) {
                    return language.string(key);
                };
                auto monitor = SystemMonitor::create(std::move(services));
                monitor->start();
                return monitor;
            },
        .makeMenuBar = std::move(makeMenuBar),
        .startUpdates = [&]() -> std::unique_ptr<UpdatesSession> {
            return std::make_unique<AgentUpdatesSession>(bundle, bus, language, arguments, quit);
        },
        .observeSettingsChanges =
            [&settingsChanges](std::function<void()> onChange) {
                return settingsChanges.observe(std::move(onChange));
            },
        .languageIsStale = [&language] { return language.processIsStale(); },
        .applyLanguageChoice = [&language] { language.applyChoiceToProcessDefaults(); },
        .launch = launchDetached,
        .executable = executable ? executable->string() : std::string(argv[0]),
        .arguments = arguments,
        .terminate = quit,
    });
    delegate.applicationDidFinishLaunching();
    const int status = QApplication::exec();
    // Posts made on the way out (updateAvailable, menuBarChanged) reach the bus before exit.
    bus.flush();
    return status;
}

}  // namespace corvane
