#include "CorvaneAgent/UI/ProcessIcon.h"

#include <QFileInfo>
#include <QPixmap>

#include <algorithm>
#include <string_view>

#include "CorvaneShared/UI/SvgSymbols.h"
#include "Platform/Linux/LinuxProcessCommands.h"

namespace corvane {

namespace {

// The row frames the icon 14 points square; drawn at twice that for high-density screens.
constexpr double iconPoints = 14;
constexpr double symbolPixelRatio = 2;

bool hasImageExtension(std::string_view name) {
    for (std::string_view extension : {".png", ".svg", ".svgz", ".xpm"}) {
        if (name.ends_with(extension)) {
            return true;
        }
    }
    return false;
}

}  // namespace

QIcon applicationIcon(const std::string& iconValue) {
    if (iconValue.empty()) {
        return {};
    }
    const QString value = QString::fromStdString(iconValue);
    if (iconValue.front() == '/') {
        return QFileInfo(value).isFile() ? QIcon(value) : QIcon();
    }
    if (hasImageExtension(iconValue)) {
        return QIcon::fromTheme(value.left(value.lastIndexOf('.')));
    }
    return QIcon::fromTheme(value);
}

ProcessIcon::ProcessIcon(std::unique_ptr<ProcessApplications> applications)
    : applications(std::move(applications)) {}

ProcessIcon::ProcessIcon(const std::filesystem::path& procRoot,
                         const SharedSettings::EnvironmentLookup& environment)
    : ProcessIcon(std::make_unique<ProcessApplications>(
          std::make_unique<LinuxProcessCommands>(procRoot),
          [directories = DesktopEntries::dataDirectories(environment)] {
              return DesktopApplicationIndex::load(directories);
          })) {}

QIcon ProcessIcon::icon(const ProcessMetric& process, const QColor& symbolColor) {
    const DesktopApplication* application = applications->application(process);
    if (application == nullptr) {
        return terminalSymbol(symbolColor);
    }
    const std::string& iconValue = application->entry.icon;
    auto found = applicationIcons.find(iconValue);
    if (found == applicationIcons.end()) {
        // A name the theme lacks is remembered too: looking it up again would fail again.
        found = applicationIcons.emplace(iconValue, applicationIcon(iconValue)).first;
    }
    return found->second.isNull() ? terminalSymbol(symbolColor) : found->second;
}

const QIcon& ProcessIcon::terminalSymbol(const QColor& color) {
    auto found = terminalSymbols.find(color.rgba());
    if (found != terminalSymbols.end()) {
        return found->second;
    }
    QIcon symbol;
    if (const auto size = SvgSymbols::shared().imageSize("terminal")) {
        const double scale = iconPoints / std::max({size->width, size->height, 1.0});
        const QImage image = SvgSymbols::shared().image("terminal", color, symbolPixelRatio, scale);
        if (!image.isNull()) {
            symbol.addPixmap(QPixmap::fromImage(image));
        }
    }
    return terminalSymbols.emplace(color.rgba(), symbol).first->second;
}

}  // namespace corvane
