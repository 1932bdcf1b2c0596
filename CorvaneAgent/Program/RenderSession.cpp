#include "CorvaneAgent/Program/RenderSession.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QScreen>
#include <QString>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <system_error>

#include <nlohmann/json.hpp>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/Headless/HeadlessSession.h"
#include "CorvaneAgent/MenuBarMeter.h"
#include "CorvaneAgent/PanelMetrics.h"
#include "CorvaneAgent/Program/QtHeadlessLoop.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneAgent/UI/MenuBarViews.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/MeterSettings.h"
#include "CorvaneShared/UI/StatusMetricView.h"
#include "CorvaneShared/UI/SvgSymbols.h"

namespace corvane {

namespace {

namespace fs = std::filesystem;

// The density of today's usual laptop and desktop screens, and the sharpest picture for the
// documentation.
constexpr double renderRatio = 2;

int failWith(const std::string& message) {
    std::fprintf(stderr, "corvane-agent: --render: %s\n", message.c_str());
    return 2;
}

// Made when missing, and written to before any sampling, so a bad directory costs no wait.
std::optional<std::string> prepareDirectory(const fs::path& directory) {
    std::error_code error;
    fs::create_directories(directory, error);
    if (!fs::is_directory(directory)) {
        return "'" + directory.string() + "' is not a directory" +
               (error ? " (" + error.message() + ")" : std::string());
    }
    if (::access(directory.c_str(), W_OK | X_OK) != 0) {
        return "cannot write to '" + directory.string() + "'";
    }
    return std::nullopt;
}

bool savePNG(const QImage& image, const fs::path& path) {
    return image.save(QString::fromStdString(path.string()), "PNG");
}

QImage renderPanel(MonitorPopover& panel) {
    const QSize size(MonitorPopover::panelWidth, panel.heightForWidth(MonitorPopover::panelWidth));
    panel.resize(size);
    QImage image(size * renderRatio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(renderRatio);
    image.fill(Qt::transparent);
    panel.render(&image);
    return image;
}

// 1 to 4: which of the densities the fit chose.
int stepNumber(const PanelMetrics& metrics) {
    for (std::size_t index = 0; index < PanelMetrics::steps.size(); ++index) {
        if (PanelMetrics::steps[index] == metrics) {
            return static_cast<int>(index) + 1;
        }
    }
    return 0;
}

// Each section's panel fitted to the budget as an opening would fit it, drawn dark and light,
// with the fit and the natural height of the chosen step.
std::optional<nlohmann::ordered_json> writePanels(const fs::path& directory, SystemMonitor& model,
                                                  SettingsStore& settings,
                                                  const AppLanguage& language) {
    PanelEnvironment environment{.units = unitSources(settings, language, &std::getenv)};
    const PanelBudgetSources budgetSources{
        .environment = [](const char* name) -> std::optional<std::string> {
            const char* value = std::getenv(name);
            return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
        },
        .itemScreenHeight = nullptr,
        .primaryScreenHeight = []() -> std::optional<double> {
            const QScreen* screen = QGuiApplication::primaryScreen();
            return screen != nullptr ? std::optional<double>(screen->availableGeometry().height())
                                     : std::nullopt;
        },
    };
    const std::shared_ptr<SystemMonitor> monitor = model.shared_from_this();
    PanelFit fit;
    nlohmann::ordered_json panels = nlohmann::ordered_json::object();
    for (MonitorSection section : {MonitorSection::cpu, MonitorSection::memory,
                                   MonitorSection::storage, MonitorSection::sensors}) {
        const auto measure = [&](const PanelMetrics& metrics) {
            std::unique_ptr<MonitorPopover> panel(
                makePanel(section, monitor, metrics, std::nullopt, {}, environment));
            return static_cast<double>(panel->heightForWidth(MonitorPopover::panelWidth));
        };
        const double budget = availableHeight(section, budgetSources);
        const PanelFitRecord record = fit.fit(section, budget, measure);
        const std::string key(sectionKey(section));
        for (const char* scheme : {"dark", "light"}) {
            environment.appearance = scheme;
            std::unique_ptr<MonitorPopover> panel(
                makePanel(section, monitor, record.metrics, record.scroll, {}, environment));
            const fs::path path =
                directory /
                ("panel-" + key + (scheme == std::string("dark") ? "" : "-light") + ".png");
            if (!savePNG(renderPanel(*panel), path)) {
                failWith("cannot write '" + path.string() + "'");
                return std::nullopt;
            }
        }
        environment.appearance.reset();
        panels[key] = {
            {"step", stepNumber(record.metrics)},
            {"scroll", record.scroll ? nlohmann::ordered_json(*record.scroll) : nullptr},
            {"naturalHeight", measure(record.metrics)},
            {"budget", budget},
        };
    }
    return panels;
}

int writeMeters(const fs::path& directory, SystemMonitor& model, SettingsStore& settings,
                const AppLanguage& language) {
    MeterSources sources{
        .layout = {settings, SvgSymbols::shared(), [&model] { return model.totalCores(); }},
        .units = unitSources(settings, language, &std::getenv),
    };
    nlohmann::ordered_json meters = nlohmann::ordered_json::object();
    for (MonitorSection section : MeterSettings::menuBarOrder(settings)) {
        if (!MeterSettings::showsItem(settings, section)) {
            continue;
        }
        const std::string key(sectionKey(section));
        sources.palette = [] { return MeterPalette::lightOnDark; };
        const MeterContent dark = meterContent(section, &model, sources);
        sources.palette = [] { return MeterPalette::darkOnLight; };
        const MeterContent light = meterContent(section, &model, sources);
        const QImage image = StatusMetricView::render(dark, renderRatio);
        const fs::path darkPath = directory / ("meter-" + key + ".png");
        const fs::path lightPath = directory / ("meter-" + key + "-light.png");
        if (!savePNG(image, darkPath)) {
            return failWith("cannot write '" + darkPath.string() + "'");
        }
        if (!savePNG(StatusMetricView::render(light, renderRatio), lightPath)) {
            return failWith("cannot write '" + lightPath.string() + "'");
        }
        meters[key] = {
            {"itemWidth", dark.columns.width},
            {"labelWidth", MeterLayout::labelWidth(sources.layout, section)},
            {"sideGap", MeterLayout::meterSideGap(sources.layout, section)},
            {"signature", drawSignature(dark)},
            {"imageWidth", image.width()},
            {"imageHeight", image.height()},
        };
    }
    const std::optional<nlohmann::ordered_json> panels =
        writePanels(directory, model, settings, language);
    if (!panels) {
        return 2;
    }
    const nlohmann::ordered_json layout = {
        {"devicePixelRatio", renderRatio}, {"meters", meters}, {"panels", *panels}};
    const fs::path layoutPath = directory / "layout.json";
    std::ofstream file(layoutPath);
    file << layout.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
    file.close();
    if (!file) {
        return failWith("cannot write '" + layoutPath.string() + "'");
    }
    return 0;
}

}  // namespace

int runRender(int& argc, char** argv, const AgentOptions& options, const AppLanguage& language) {
    if (auto problem = prepareDirectory(options.renderDirectory)) {
        return failWith(*problem);
    }
    // Images need no display; a platform named explicitly is still honoured.
    if (std::getenv("QT_QPA_PLATFORM") == nullptr) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    }
    // The panels are widgets, which need the widget application.
    QApplication application(argc, argv);
    QtHeadlessLoop loop;
    return runHeadless(loop, options, language, [&](SystemMonitor& model, SettingsStore& settings) {
        return writeMeters(options.renderDirectory, model, settings, language);
    });
}

}  // namespace corvane
