#include "CorvaneAgent/UI/MenuBarViews.h"

#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneAgent/UI/CPUDetailView.h"
#include "CorvaneAgent/UI/MemoryDetailView.h"
#include "CorvaneAgent/UI/SensorsDetailView.h"
#include "CorvaneAgent/UI/StorageDetailView.h"

namespace corvane {

namespace {

QWidget* contentOf(MonitorSection section, std::unique_ptr<PanelSource> source,
                   PanelContext context) {
    switch (section) {
        case MonitorSection::memory:
            return new MemoryDetailView(std::move(source), std::move(context));
        case MonitorSection::storage:
            return new StorageDetailView(std::move(source), std::move(context));
        case MonitorSection::sensors:
            return new SensorsDetailView(std::move(source), std::move(context));
        case MonitorSection::cpu: break;
    }
    return new CPUDetailView(std::move(source), std::move(context));
}

}  // namespace

MonitorPopover* makePanel(MonitorSection section, std::shared_ptr<SystemMonitor> monitor,
                          const PanelMetrics& metrics, std::optional<double> scrollHeight,
                          const PanelActions& actions, const PanelEnvironment& environment,
                          QWidget* parent) {
    return makePanel(section, monitorPanelSource(std::move(monitor)), metrics, scrollHeight,
                     actions, environment, parent);
}

MonitorPopover* makePanel(MonitorSection section, std::unique_ptr<PanelSource> source,
                          const PanelMetrics& metrics, std::optional<double> scrollHeight,
                          const PanelActions& actions, const PanelEnvironment& environment,
                          QWidget* parent) {
    PanelContext context{environment.units, metrics, environment.profile, environment.processIcon};
    const PopoverTexts texts{context.text(panelTitle(section)), std::string(sectionIcon(section)),
                             context.text("Settings"), context.text("Quit")};
    const SettingsStore& settings = environment.units.settings.get();
    PopoverLook look{
        .appearance =
            [&settings, forced = environment.appearance] {
                return forced ? *forced : settings.string("popoverAppearance").value_or("system");
            },
        .background =
            [&settings] { return settings.string("popoverBackground").value_or("translucent"); },
        .desktopPrefersDark = environment.desktopPrefersDark,
        .compositorRunning = environment.compositorRunning,
    };
    QWidget* content = contentOf(section, std::move(source), std::move(context));
    return new MonitorPopover(texts, content, scrollHeight,
                              {actions.close, actions.openSettings, actions.quit}, std::move(look),
                              parent);
}

}  // namespace corvane
