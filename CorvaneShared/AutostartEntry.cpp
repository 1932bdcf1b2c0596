#include "CorvaneShared/AutostartEntry.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <system_error>
#include <vector>

#include "CorvaneShared/BundleDirectory.h"
#include "CorvaneShared/DesktopEntry.h"
#include "Foundation/FileReplacement.h"
#include "Foundation/TextTrimming.h"

namespace corvane::AutostartEntry {

namespace {

namespace fs = std::filesystem;

// The escapes of the string value type, which a reader resolves before anything else.
std::string escapedValue(std::string_view value) {
    std::string result;
    for (const char c : value) {
        switch (c) {
            case '\\': result += "\\\\"; break;
            case '\n': result += "\\n"; break;
            case '\t': result += "\\t"; break;
            case '\r': result += "\\r"; break;
            default: result += c;
        }
    }
    return result;
}

// The one key DesktopEntry leaves out that tells whether the user switched the entry off in
// the desktop's startup settings.
bool isSwitchedOff(const fs::path& entryFile) {
    std::ifstream stream(entryFile);
    bool inMainGroup = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with('[')) {
            inMainGroup = text::trim(line) == "[Desktop Entry]";
            continue;
        }
        const std::size_t equals = line.find('=');
        if (inMainGroup && equals != std::string::npos &&
            text::trim(std::string_view(line).substr(0, equals)) == "X-GNOME-Autostart-enabled" &&
            text::trim(std::string_view(line).substr(equals + 1)) == "false") {
            return true;
        }
    }
    return false;
}

std::string failure(std::string_view what, const fs::path& path, int error) {
    return std::string(what) + " " + path.string() + ": " + std::strerror(error);
}

}  // namespace

std::optional<fs::path> directory(const SharedSettings::EnvironmentLookup& environment,
                                  const SharedSettings::AccountHomeLookup& accountHome) {
    // The settings folder already resolves the configuration home by the XDG rules.
    const std::optional<fs::path> settings =
        SharedSettings::settingsDirectory(environment, accountHome);
    if (!settings) {
        return std::nullopt;
    }
    return settings->parent_path() / "autostart";
}

std::optional<fs::path> directory() {
    const std::optional<fs::path>& settings = SharedSettings::settingsDirectory();
    return settings ? std::optional(settings->parent_path() / "autostart") : std::nullopt;
}

std::optional<fs::path> agentOfCompanion(const fs::path& companion) {
    fs::path agent = companion.parent_path() / "corvane-agent";
    if (const std::optional<fs::path> bundle = BundleDirectory::bundleOfExecutable(companion)) {
        const fs::path agentBundle =
            *bundle / "Contents" / "Library" / "LoginItems" / "CorvaneAgent.app";
        const std::optional<BundleInfo> info = BundleDirectory::readInfo(agentBundle);
        if (info && info->executable && !info->executable->empty()) {
            agent = agentBundle / *info->executable;
        }
    }
    std::error_code error;
    if (!fs::is_regular_file(agent, error)) {
        return std::nullopt;
    }
    return agent;
}

fs::path file(const fs::path& directory, std::string_view name) {
    return directory / (std::string(name) + ".desktop");
}

std::string execArgument(std::string_view argument) {
    std::string quoted = "\"";
    for (const char c : argument) {
        if (c == '"' || c == '`' || c == '$' || c == '\\') {
            quoted += '\\';
        } else if (c == '%') {
            quoted += '%';
        }
        quoted += c;
    }
    quoted += '"';
    return quoted;
}

std::string contents(const fs::path& agent) {
    // Version 1.4: every key below is in it, and validators still in use (Debian 12's) refuse
    // 1.5 as unknown.
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Version=1.4\n"
           "Name=Corvane\n"
           "Comment=System monitor in the menu bar\n"
           "Exec=" +
           escapedValue(execArgument(agent.string())) +
           "\n"
           // The session skips the entry once the agent is gone, instead of reporting a failure.
           "TryExec=" +
           escapedValue(agent.string()) +
           "\n"
           "Terminal=false\n"
           "X-GNOME-Autostart-enabled=true\n";
}

Status status(const fs::path& entryFile, const fs::path& agent) {
    std::error_code error;
    if (!fs::exists(fs::symlink_status(entryFile, error))) {
        return {};
    }
    const std::optional<DesktopEntry> entry = DesktopEntries::read(entryFile);
    if (!entry) {
        return {.state = State::elsewhere};
    }
    if (entry->hidden || isSwitchedOff(entryFile)) {
        return {};
    }
    // Our own Exec is compared as written, since a quoted "%%" reads differently by launcher.
    const std::vector<std::string> arguments = DesktopEntries::commandLine(*entry);
    if (entry->exec == execArgument(agent.string()) ||
        (arguments.size() == 1 && arguments.front() == agent.string())) {
        return {.state = State::on};
    }
    return {.state = State::elsewhere, .program = arguments.empty() ? "" : arguments.front()};
}

std::optional<std::string> install(const fs::path& entryFile, const fs::path& agent) {
    std::error_code error;
    fs::create_directories(entryFile.parent_path(), error);
    if (error) {
        return "cannot create " + entryFile.parent_path().string() + ": " + error.message();
    }
    errno = 0;
    if (!replaceFileContents(entryFile, contents(agent), 0644)) {
        return failure("cannot write", entryFile, errno);
    }
    return std::nullopt;
}

std::optional<std::string> remove(const fs::path& entryFile) {
    std::error_code error;
    fs::remove(entryFile, error);
    if (error) {
        return "cannot remove " + entryFile.string() + ": " + error.message();
    }
    return std::nullopt;
}

}  // namespace corvane::AutostartEntry
