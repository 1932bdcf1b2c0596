#include "CorvaneAgent/Program/DesktopMenuBar.h"

#include <QObject>
#include <QString>

#include <cstdlib>
#include <optional>
#include <utility>

#include "CorvaneAgent/Program/DrawnMeterViews.h"
#include "CorvaneAgent/StatusBarController.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneAgent/UI/PanelWindow.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/MonitorSection.h"
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

DesktopMenuBar::DesktopMenuBar(UnitSources units)
    : processIcons("/proc", &std::getenv), panelEnvironment{.units = std::move(units)} {}

DesktopMenuBar::~DesktopMenuBar() = default;

std::variant<std::unique_ptr<DesktopMenuBar>, std::string> DesktopMenuBar::start(
    DesktopMenuBarServices services) {
    const MenuBarEnvironment environment{.sessionBus = hasSessionBus(),
                                         .statusNotifierWatcher = hasStatusNotifierWatcher(),
                                         .x11 = isX11Platform()};
    const auto choice = chooseMenuBarHost(services.request, environment);
    if (const auto* refusal = std::get_if<MenuBarHostRefusal>(&choice)) {
        return refusal->message;
    }
    const MenuBarHostKind kind = std::get<MenuBarHostKind>(choice);
    const AppLanguage& language = services.language;
    MenuBarHostCreation made = makeHost(kind, services.own,
                                        {.settingsLabel = language.string("Settings"),
                                         .quitLabel = language.string("Quit"),
                                         .openSettings = services.openSettings,
                                         .quit = services.quit});
    if (!made.host) {
        return made.failure;
    }

    const UnitSources units = unitSources(services.shared, language, &std::getenv);
    std::unique_ptr<DesktopMenuBar> bar(new DesktopMenuBar(units));
    DesktopMenuBar* const self = bar.get();
    bar->host = std::move(made.host);
    bar->panelEnvironment.processIcon = [self](const ProcessMetric& process) {
        return self->processIcons.icon(process);
    };
    bar->panelEnvironment.desktopPrefersDark = [self] { return self->colorScheme.prefersDark(); };
    bar->panelEnvironment.compositorRunning = &desktopCompositorRunning;

    std::weak_ptr<SystemMonitor> weakMonitor = services.monitor;
    MeterSources meterSources{
        .layout = {services.shared, SvgSymbols::shared(),
                   [weakMonitor] {
                       const auto monitor = weakMonitor.lock();
                       return monitor ? monitor->totalCores() : 0;
                   }},
        .units = units,
        // The strip is Corvane's own dark bar. A tray item sits on the desktop's panel, whose
        // colours the desktop's stated preference tells best; without one, light meters, since
        // most desktops' panels are dark whatever their windows are (Xfce, Cinnamon, Budgie,
        // GNOME's top bar), and Qt's own palette then only says what windows look like.
        .palette = kind == MenuBarHostKind::strip
                       ? std::function<MeterPalette()>()
                       : std::function<MeterPalette()>([self] {
                             return self->colorScheme.preference() ==
                                            DesktopColorScheme::Preference::light
                                        ? MeterPalette::darkOnLight
                                        : MeterPalette::lightOnDark;
                         }),
    };
    bar->meters = std::make_unique<DrawnMeterViews>(services.monitor, std::move(meterSources));

    PopoverFactory makePopover = [self, monitor = services.monitor, &language,
                                  openSettings = services.openSettings, quit = services.quit](
                                     MonitorSection section, std::function<void()> close) {
        PanelActions actions{.close = std::move(close), .openSettings = openSettings, .quit = quit};
        return std::make_unique<PanelWindow>(
            QString::fromStdString(language.string(panelTitle(section))),
            [self, monitor, section, actions](const PanelMetrics& metrics,
                                              std::optional<double> scrollHeight) -> QWidget* {
                return makePanel(section, monitor, metrics, scrollHeight, actions,
                                 self->panelEnvironment);
            });
    };

    bar->controller = StatusBarController::create({
        .monitor = services.monitor,
        .host = *bar->host,
        .meters = *bar->meters,
        .makePopover = std::move(makePopover),
        .shared = services.shared,
        .own = services.own,
        .bus = services.bus,
        .runtime = services.runtime,
        .observeSettingsChanges = std::move(services.observeSettingsChanges),
        .translate = [&language](std::string_view key) { return language.string(key); },
        .environment = &std::getenv,
    });
    // A new desktop preference redraws the meters and an open panel in the new colours.
    QObject::connect(&bar->colorScheme, &DesktopColorScheme::changed,
                     [self] { self->applyMeterSettings(); });
    return bar;
}

void DesktopMenuBar::applyMeterSettings() {
    controller->applyMeterSettings();
}

}  // namespace corvane
