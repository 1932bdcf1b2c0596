#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "CorvaneShared/DesktopEntry.h"
#include "Platform/ProcessCommands.h"

namespace corvane {

/// An installed application: a desktop entry and its desktop file ID ("org.gnome.Meld.desktop").
struct DesktopApplication {
    std::string id;
    DesktopEntry entry;
};

/// The applications installed as XDG desktop entries, indexed by the programs they start and
/// the window class they announce, to tell which application a running process belongs to.
/// Read-only once loaded, so any thread may match.
class DesktopApplicationIndex {
public:
    /// Reads every entry under `applications/` of each data directory, subdirectories included
    /// (`applications/kde/a.desktop` has the ID "kde-a.desktop"). An ID found in an earlier
    /// directory shadows the same ID in later ones; a hidden entry shadows and is never matched.
    static DesktopApplicationIndex load(const std::vector<std::filesystem::path>& dataDirectories);

    /// The application a process named `name` (the process table's name) running `command`
    /// belongs to; null when none is installed for it. Matched, in this order: the name
    /// against the program an entry starts (or its TryExec); the executable or an absolute
    /// first argument against an entry's absolute program path; the executable's and the first
    /// argument's file names against an entry's program; the name and the executable's file
    /// name against StartupWMClass, ignoring case. Entries shown in menus win over NoDisplay
    /// ones, then the data directory order, then the ID.
    const DesktopApplication* match(std::string_view name, const ProcessCommand& command) const;

    std::size_t size() const { return applications.size(); }

private:
    using Index = std::unordered_map<std::string, std::size_t>;

    void add(DesktopApplication application);

    std::vector<DesktopApplication> applications;
    Index byPath;
    Index byProgram;
    Index byWindowClass;
};

}  // namespace corvane
