#include "CorvaneAgent/Program/RenderSession.h"

#include <QGuiApplication>
#include <QImage>
#include <QString>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

#include <nlohmann/json.hpp>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/MenuBarMeter.h"
#include "CorvaneAgent/Program/HeadlessSession.h"
#include "CorvaneAgent/SystemMonitor.h"
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
    const nlohmann::ordered_json layout = {{"devicePixelRatio", renderRatio}, {"meters", meters}};
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
    QGuiApplication application(argc, argv);
    return runHeadless(options, language, [&](SystemMonitor& model, SettingsStore& settings) {
        return writeMeters(options.renderDirectory, model, settings, language);
    });
}

}  // namespace corvane
