#include "CorvaneShared/SharedSettings.h"

#include <pwd.h>
#include <unistd.h>
#include <array>

#include <cerrno>
#include <cstdlib>
#include <vector>

#include "CorvaneShared/BuildInfo.h"
#include "CorvaneShared/JSONFileSettingsStore.h"
#include "Foundation/EnumNames.h"

namespace corvane::SharedSettings {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view fileExtension = ".json";

constexpr std::array<EnumName<Signal>, 6> signalNames{{
    {Signal::settings, "settings"},
    {Signal::quitAgent, "quitAgent"},
    {Signal::openSettings, "openSettings"},
    {Signal::checkForUpdates, "checkForUpdates"},
    {Signal::updateAvailable, "updateAvailable"},
    {Signal::menuBarChanged, "menuBarChanged"},
}};

// The account database answers for a process started without HOME (a service, `env -i`).
std::optional<std::string> accountHomeDirectory() {
    const long suggested = ::sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(suggested > 0 ? static_cast<std::size_t>(suggested) : 16 * 1024);
    passwd entry{};
    passwd* found = nullptr;
    int error = 0;
    while ((error = ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found)) ==
               ERANGE &&
           buffer.size() < 1024 * 1024) {
        buffer.resize(buffer.size() * 2);
    }
    if (error != 0 || found == nullptr || found->pw_dir == nullptr) {
        return std::nullopt;
    }
    return std::string(found->pw_dir);
}

// A relative home would put the settings wherever the process happens to start.
bool isAbsolutePath(const char* value) {
    return value != nullptr && value[0] == '/';
}

fs::path settingsDirectoryUnderHome(const char* home) {
    return fs::path(home) / ".config" / "corvane";
}

}  // namespace

const std::string& appGroupIdentifier() {
    static const std::string identifier =
        std::string(buildinfo::teamPrefix) + "." + std::string(buildinfo::appBundleIdentifier);
    return identifier;
}

std::string resolveSuiteName(const char* environmentValue, std::string_view appGroup) {
    return environmentValue != nullptr ? std::string(environmentValue) : std::string(appGroup);
}

const std::string& suiteName() {
    static const std::string name =
        resolveSuiteName(std::getenv(suiteEnvironmentVariable), appGroupIdentifier());
    return name;
}

bool isUsableSuiteName(std::string_view name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find('/') == std::string_view::npos && name.find('\0') == std::string_view::npos &&
           name.size() + fileExtension.size() <= JSONFileSettingsStore::maximumFileNameLength;
}

std::optional<fs::path> settingsDirectory(const EnvironmentLookup& environment,
                                          const AccountHomeLookup& accountHome) {
    // The XDG base directory rule: an unset, empty or relative value is ignored.
    const char* configHome = environment("XDG_CONFIG_HOME");
    if (isAbsolutePath(configHome)) {
        return fs::path(configHome) / "corvane";
    }
    const char* home = environment("HOME");
    if (isAbsolutePath(home)) {
        return settingsDirectoryUnderHome(home);
    }
    const std::optional<std::string> accountDirectory = accountHome();
    if (accountDirectory && isAbsolutePath(accountDirectory->c_str())) {
        return settingsDirectoryUnderHome(accountDirectory->c_str());
    }
    return std::nullopt;
}

const std::optional<fs::path>& settingsDirectory() {
    static const std::optional<fs::path> directory = settingsDirectory(
        [](const char* name) -> const char* { return std::getenv(name); }, accountHomeDirectory);
    return directory;
}

fs::path storeFile(std::string_view suite, const fs::path& directory) {
    const std::string_view name =
        isUsableSuiteName(suite) ? suite : buildinfo::agentBundleIdentifier;
    return directory / (std::string(name) + std::string(fileExtension));
}

std::unique_ptr<SettingsStore> openStore(std::string_view suite,
                                         const std::optional<fs::path>& directory) {
    if (!directory) {
        return std::make_unique<InMemorySettingsStore>();
    }
    return std::make_unique<JSONFileSettingsStore>(storeFile(suite, *directory));
}

// Both stores are deliberately never destroyed: code running during exit (another static's
// destructor, a thread not yet joined) may still read a setting.
SettingsStore& store() {
    static SettingsStore* const shared = openStore(suiteName(), settingsDirectory()).release();
    return *shared;
}

SettingsStore& standardStore() {
    static SettingsStore* const standard =
        openStore(buildinfo::agentBundleIdentifier, settingsDirectory()).release();
    return *standard;
}

const SettingList& factoryDefaults() {
    static const SettingList defaults = {
        {"agentEnabled", true},
        {"settingsPane", "menuBar"},
        {"refreshInterval", 1.0},
        {"showCPUItem", true},
        {"showMemoryItem", true},
        {"showStorageItem", true},
        {"showSensorsItem", true},
        {"cpuReadout", "temperature"},
        {"sensorsReadout", "power"},
        {"showMemoryPercent", true},
        {"meterStyle", "bars"},
        {"meterShape", "pill"},
        {"menuBarOrder", "storage,sensors,memory,cpu"},
        {"language", "system"},
        {"temperatureUnit", "system"},
        {"meterLabelStyle", "icons"},
        {"accentChoice", "signal"},
        {"performanceCoreAccent", "indigo"},
        {"popoverAppearance", "system"},
        {"popoverBackground", "translucent"},
        {"updatesCheckAutomatically", true},
        {"updaterCanCheck", false},
        {"didUnregisterLegacyLoginItem", false},
    };
    return defaults;
}

std::string_view signalCaseName(Signal signal) {
    return enumName(signalNames, signal).raw;
}

std::optional<Signal> signalFromCaseName(std::string_view name) {
    return enumFromRaw(signalNames, name);
}

std::string signalName(Signal signal, std::string_view suite) {
    std::string name(suite);
    name += '.';
    name += signalCaseName(signal);
    return name;
}

std::string signalName(Signal signal) {
    return signalName(signal, suiteName());
}

}  // namespace corvane::SharedSettings
