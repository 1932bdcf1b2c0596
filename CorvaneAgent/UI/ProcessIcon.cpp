#include "CorvaneAgent/UI/ProcessIcon.h"

#include <QFileInfo>

#include <algorithm>
#include <iterator>
#include <string_view>
#include <system_error>

#include "Platform/Linux/LinuxProcessCommands.h"

namespace corvane {

namespace {

bool hasImageExtension(std::string_view name) {
    constexpr std::string_view extensions[] = {".png", ".svg", ".svgz", ".xpm"};
    return std::any_of(std::begin(extensions), std::end(extensions),
                       [&](std::string_view extension) { return name.ends_with(extension); });
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
          })) {
    for (const std::filesystem::path& directory : DesktopEntries::dataDirectories(environment)) {
        std::error_code error;
        if (std::filesystem::is_directory(directory / "applications", error)) {
            applicationFolders.addPath(
                QString::fromStdString((directory / "applications").string()));
        }
    }
    // Read again lazily, at the next row drawn: a package manager touches the folder many times
    // in one install.
    QObject::connect(&applicationFolders, &QFileSystemWatcher::directoryChanged,
                     &applicationFolders, [this] {
                         applications->reload();
                         applicationIcons.clear();
                     });
}

QIcon ProcessIcon::icon(const ProcessMetric& process) {
    const DesktopApplication* application = applications->application(process);
    if (application == nullptr) {
        return {};
    }
    const std::string& iconValue = application->entry.icon;
    auto found = applicationIcons.find(iconValue);
    if (found == applicationIcons.end()) {
        // A name the theme lacks is remembered too: looking it up again would fail again.
        found = applicationIcons.emplace(iconValue, applicationIcon(iconValue)).first;
    }
    return found->second;
}

}  // namespace corvane
