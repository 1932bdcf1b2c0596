#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "CorvaneShared/SharedSettings.h"
#include "Platform/ProcessLauncher.h"

namespace corvane {

/// The keys of an XDG desktop entry's [Desktop Entry] group that starting it needs.
struct DesktopEntry {
    /// Where the entry was read from (the %k field code).
    std::filesystem::path file;
    /// The Exec value as a string, escapes (\s, \n, \t, \r, \\) already resolved.
    std::string exec;
    std::string name;
    std::string icon;
    /// The Path key: the working directory; empty when not given.
    std::string workingDirectory;
    /// The TryExec key: the program whose presence the entry depends on; empty when not given.
    std::string tryExec;
    /// The StartupWMClass key: the window class its main window carries; empty when not given.
    std::string startupWMClass;
    /// Hidden=true: the entry counts as deleted.
    bool hidden = false;
    /// NoDisplay=true: the application exists but is left out of menus.
    bool noDisplay = false;
};

/// Finding, reading and starting XDG desktop entries (freedesktop.org Desktop Entry 1.5, Base
/// Directory 0.8). Reads the disk on every call; any thread.
namespace DesktopEntries {

/// The XDG data directories in the order of precedence: $XDG_DATA_HOME (default
/// ~/.local/share), then each of $XDG_DATA_DIRS (default /usr/local/share:/usr/share). Relative
/// directories are left out.
std::vector<std::filesystem::path> dataDirectories(
    const SharedSettings::EnvironmentLookup& environment);

/// `<identifier>.desktop` in the first data directory that has it: $XDG_DATA_HOME (default
/// ~/.local/share), then each of $XDG_DATA_DIRS (default /usr/local/share:/usr/share), each
/// under `applications/`. Relative directories are ignored. Absent when none has it, or when the
/// first found is hidden (a user's hidden copy deletes the system's).
std::optional<std::filesystem::path> find(std::string_view identifier,
                                          const SharedSettings::EnvironmentLookup& environment);

/// The [Desktop Entry] group of an entry's text, read from `file`. Lines outside the group,
/// comments, lines without '=' and localised keys ("Name[de]") are ignored.
DesktopEntry parse(std::string_view text, const std::filesystem::path& file);
/// The entry's [Desktop Entry] group (see parse); absent when the file cannot be read.
std::optional<DesktopEntry> read(const std::filesystem::path& file);

/// The Exec value split into arguments by its quoting rules, with its field codes expanded as
/// for a start without files or URLs: %f %F %u %U and the deprecated codes are removed, %i
/// becomes "--icon <Icon>" (nothing without an icon), %c the name, %k the entry's file, %% a
/// percent sign. An argument that consisted of a removed code disappears. Empty for an
/// unterminated quote.
std::vector<std::string> commandLine(const DesktopEntry& entry);

/// The launch the entry describes; absent when its command line is empty (no Exec).
std::optional<DetachedLaunch> launch(const DesktopEntry& entry);

}  // namespace DesktopEntries

}  // namespace corvane
