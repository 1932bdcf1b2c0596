#include "CorvaneAgent/Program/MenuBarSession.h"

#include <QString>

#include <cstdlib>
#include <utility>

#include "CorvaneAgent/Program/DrawnMeterViews.h"
#include "CorvaneAgent/StatusBarController.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneAgent/UI/PanelWindow.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/SettingsStore.h"
#include "CorvaneShared/UI/SvgSymbols.h"
#include "Platform/Qt/MenuBarHostSupport.h"
#include "Platform/Qt/StripMenuBarHost.h"
#include "Platform/Qt/TrayMenuBarHost.h"

namespace corvane {

namespace {

MenuBarHostCreation makeHost(MenuBarHostKind kind, SettingsStore& own, MenuBarHostMenu menu) {
    // Hosts order their items by the positions the controller records before adding them.
    PreferredPositionLookup preferredPosition =
        [&own](const std::string& autosaveName) -> std::optional<double> {
        const SettingValue value = own.object("NSStatusItem Preferred Position " + autosaveName);
        if (!value.is_number()) {
            return std::nullopt;
        }
        return value.get<double>();
    };
    return kind == MenuBarHostKind::tray
               ? TrayMenuBarHost::create(std::move(preferredPosition), std::move(menu))
               : StripMenuBarHost::create(std::move(preferredPosition), std::move(menu));
}

}  // namespace

std::variant<std::unique_ptr<MenuBarSession>, std::string> MenuBarSession::start(
    MenuBarSessionServices services) {
    const MenuBarEnvironment environment{.sessionBus = hasSessionBus(),
                                         .statusNotifierWatcher = hasStatusNotifierWatcher(),
                                         .x11 = isX11Platform()};
    const auto choice = chooseMenuBarHost(services.request, environment);
    if (const auto* refusal = std::get_if<MenuBarHostRefusal>(&choice)) {
        return refusal->message;
    }
    const AppLanguage& language = services.language;
    MenuBarHostCreation made =
        makeHost(std::get<MenuBarHostKind>(choice), services.own,
                 {.settingsLabel = language.string("Settings"),
                  .quitLabel = language.string("Quit"),
                  .openSettings = services.openSettings,
                  .quit = services.quit});
    if (!made.host) {
        return made.failure;
    }

    std::unique_ptr<MenuBarSession> session(new MenuBarSession());
    session->host = std::move(made.host);
    std::weak_ptr<SystemMonitor> weakMonitor = services.monitor;
    MeterSources sources{
        .layout = {services.shared, SvgSymbols::shared(),
                   [weakMonitor] {
                       const auto monitor = weakMonitor.lock();
                       return monitor ? monitor->totalCores() : 0;
                   }},
        .units = unitSources(services.shared, language, &std::getenv),
    };
    session->meters = std::make_unique<DrawnMeterViews>(services.monitor, std::move(sources));

    PopoverFactory makePopover = [](MonitorSection, std::function<void()>) {
        return std::unique_ptr<Popover>();  // PANELS: filled in when the panels land
    };

    session->controller = StatusBarController::create({
        .monitor = services.monitor,
        .host = *session->host,
        .meters = *session->meters,
        .makePopover = std::move(makePopover),
        .shared = services.shared,
        .own = services.own,
        .bus = services.bus,
        .runtime = services.runtime,
        .observeSettingsChanges = std::move(services.observeSettingsChanges),
        .translate = [&language](std::string_view key) { return language.string(key); },
        .environment = &std::getenv,
    });
    return session;
}

MenuBarSession::~MenuBarSession() = default;

void MenuBarSession::applyMeterSettings() {
    controller->applyMeterSettings();
}

}  // namespace corvane
