#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "CorvaneShared/SettingsStore.h"

/// The settings the agent shares with its companion application: the suite that names them, the
/// process-wide store, the factory defaults and the names of the cross-process signals. Every
/// process-wide value is computed once, on first use, and is safe to reach from any thread.
namespace corvane::SharedSettings {

/// The environment variable that replaces the suite name, for test and development isolation.
inline constexpr const char* suiteEnvironmentVariable = "CORVANE_SETTINGS_SUITE";

/// Looks up an environment variable: its value, or null when it is unset.
using EnvironmentLookup = std::function<const char*(const char* name)>;
/// The home directory of the account running the process, or absent when it has none.
using AccountHomeLookup = std::function<std::optional<std::string>()>;

/// The group the application and the agent share: the team prefix, a point, and the
/// application's bundle identifier, as configured for the build.
const std::string& appGroupIdentifier();

/// The suite name for the environment variable's value (null when it is unset): that value,
/// even an empty one, else `appGroup`.
std::string resolveSuiteName(const char* environmentValue, std::string_view appGroup);
/// The suite name of this process, from its environment as first read.
const std::string& suiteName();

/// False for a name that cannot name the suite's file: empty, ".", "..", holding a '/' or a
/// NUL, or too long for the file and the names derived from it.
bool isUsableSuiteName(std::string_view name);

/// The settings folder: `$XDG_CONFIG_HOME/corvane` when that is an absolute path, else
/// `$HOME/.config/corvane`, else under the account's home directory; absent when no absolute
/// home is known.
std::optional<std::filesystem::path> settingsDirectory(const EnvironmentLookup& environment,
                                                       const AccountHomeLookup& accountHome);
/// The settings folder of this process (the process environment and the account database).
const std::optional<std::filesystem::path>& settingsDirectory();

/// The file of `suite` in `directory`: `<suite>.json`, or the agent's own file when `suite` is
/// unusable.
std::filesystem::path storeFile(std::string_view suite, const std::filesystem::path& directory);
/// A store on storeFile(suite, directory); in memory when there is no directory. Logs nothing.
std::unique_ptr<SettingsStore> openStore(std::string_view suite,
                                         const std::optional<std::filesystem::path>& directory);
/// The shared store of this process, opened with suiteName() in settingsDirectory(); lives
/// until the process ends.
SettingsStore& store();
/// The agent's own store (item generation, item positions, language list), beside the shared
/// one; lives until the process ends.
SettingsStore& standardStore();

/// The values the start-up code registers before anything reads a setting, in their order of
/// definition.
const SettingList& factoryDefaults();

/// A payload-free cross-process signal.
enum class Signal {
    settings,
    quitAgent,
    openSettings,
    checkForUpdates,
    updateAvailable,
    menuBarChanged,
};

/// Every signal, in the order of the enumeration.
inline constexpr Signal allSignals[] = {
    Signal::settings,        Signal::quitAgent,       Signal::openSettings,
    Signal::checkForUpdates, Signal::updateAvailable, Signal::menuBarChanged,
};

/// The case name as written in the enumeration.
std::string_view signalCaseName(Signal signal);
/// The signal whose case name is exactly `name`; absent for any other text.
std::optional<Signal> signalFromCaseName(std::string_view name);
/// `suite` + "." + the case name.
std::string signalName(Signal signal, std::string_view suite);
/// The signal's system-wide name in this process's suite.
std::string signalName(Signal signal);

}  // namespace corvane::SharedSettings
