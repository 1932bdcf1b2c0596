#pragma once

#include <QFileSystemWatcher>
#include <QIcon>

#include <filesystem>
#include <map>
#include <memory>
#include <string>

#include "CorvaneAgent/ProcessApplications.h"
#include "CorvaneShared/SharedSettings.h"

namespace corvane {

/// The icons of the process rows: the icon of the desktop application a process belongs to.
/// Icons are kept by name, so a row drawn on every refresh loads nothing. Main thread only.
class ProcessIcon {
public:
    explicit ProcessIcon(std::unique_ptr<ProcessApplications> applications);
    /// Over procfs at `procRoot` and the desktop entries of the XDG data directories that
    /// `environment` names, read again when an applications folder among them changes (an
    /// application installed or removed while the agent runs).
    ProcessIcon(const std::filesystem::path& procRoot,
                const SharedSettings::EnvironmentLookup& environment);

    /// The icon of `process`'s application; null when it has none or its icon cannot be found
    /// (the row then shows the "terminal" symbol in the panel's colours).
    QIcon icon(const ProcessMetric& process);

private:
    std::unique_ptr<ProcessApplications> applications;
    std::map<std::string, QIcon> applicationIcons;
    QFileSystemWatcher applicationFolders;
};

/// The icon a desktop entry's Icon value names: an image file when it is an absolute path,
/// else an icon of the desktop's theme (the extension some older entries give is dropped);
/// null when there is none.
QIcon applicationIcon(const std::string& iconValue);

}  // namespace corvane
