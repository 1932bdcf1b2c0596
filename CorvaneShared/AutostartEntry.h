#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "CorvaneShared/SharedSettings.h"

/// The agent's login item: an XDG autostart entry (freedesktop.org Desktop Application
/// Autostart 0.5) in the user's autostart folder, which the session starts at login. Reads and
/// writes the disk on every call; nothing throws; any thread.
namespace corvane::AutostartEntry {

/// `autostart/` beside the settings folder: in $XDG_CONFIG_HOME when that is absolute, else in
/// ~/.config; absent when no absolute home is known.
std::optional<std::filesystem::path> directory(
    const SharedSettings::EnvironmentLookup& environment,
    const SharedSettings::AccountHomeLookup& accountHome);

/// The autostart folder of this process (beside SharedSettings::settingsDirectory()).
std::optional<std::filesystem::path> directory();

/// The agent a companion program at `companion` belongs to, which is what the entry starts: in
/// the portable bundle the program the agent bundle's info names
/// (`Corvane.app/bin/corvanectl` gives
/// `Corvane.app/Contents/Library/LoginItems/CorvaneAgent.app/bin/corvane-agent`); installed
/// under a prefix or in the build tree, `corvane-agent` beside the companion. Absent when that
/// program is not there.
std::optional<std::filesystem::path> agentOfCompanion(const std::filesystem::path& companion);

/// `<directory>/<name>.desktop`; the name is the agent's bundle identifier.
std::filesystem::path file(const std::filesystem::path& directory, std::string_view name);

/// `argument` as one argument of an Exec value, before the value's own string escapes: in
/// double quotes, with '"', '`', '$' and '\' behind a backslash, and '%' doubled.
std::string execArgument(std::string_view argument);

/// The entry that starts `agent` (an absolute path) at login.
std::string contents(const std::filesystem::path& agent);

enum class State {
    /// No entry, or one the user switched off (Hidden=true, X-GNOME-Autostart-enabled=false).
    off,
    /// An entry that starts `agent`.
    on,
    /// An entry that starts another program, or that cannot be read.
    elsewhere,
};

struct Status {
    State state = State::off;
    /// For `elsewhere`, the program the entry starts (empty when it cannot be read).
    std::string program;
};

/// What the entry at `entryFile` does about `agent`.
Status status(const std::filesystem::path& entryFile, const std::filesystem::path& agent);

/// Replaces the entry at `entryFile` with one for `agent` in one step, creating its folder.
/// Why not, in one line, when it fails.
std::optional<std::string> install(const std::filesystem::path& entryFile,
                                   const std::filesystem::path& agent);

/// Removes the entry at `entryFile`, whatever it starts; a missing entry is no failure. Why
/// not, in one line, when it fails.
std::optional<std::string> remove(const std::filesystem::path& entryFile);

}  // namespace corvane::AutostartEntry
