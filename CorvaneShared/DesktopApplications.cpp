#include "CorvaneShared/DesktopApplications.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <system_error>
#include <tuple>
#include <utility>

#include "Foundation/DirectoryListing.h"

namespace corvane {

namespace {

namespace fs = std::filesystem;

// Deep enough for vendor folders; bounded because a symbolic link may loop back.
constexpr int maximumFolderDepth = 4;

std::string_view fileName(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string lowercased(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return result;
}

bool isEnvironmentAssignment(std::string_view argument) {
    const std::size_t equals = argument.find('=');
    return equals != std::string_view::npos && equals > 0 && !argument.starts_with('-');
}

// env(1) options whose value is the next argument rather than part of the option.
bool takesSeparateValue(std::string_view option) {
    return option == "-u" || option == "--unset" || option == "-C" || option == "--chdir";
}

// The program an Exec line runs: launchers put "env VAR=value" in front (snaps do), and
// Flatpak entries run "flatpak run --command=<program> <app>", whose program is what the
// sandboxed process executes.
std::string startedProgram(const std::vector<std::string>& arguments) {
    std::size_t index = 0;
    if (index < arguments.size() && fileName(arguments[index]) == "env") {
        ++index;
        while (index < arguments.size() &&
               (isEnvironmentAssignment(arguments[index]) || arguments[index].starts_with('-'))) {
            index += takesSeparateValue(arguments[index]) ? 2 : 1;
        }
    }
    if (index >= arguments.size()) {
        return {};
    }
    if (fileName(arguments[index]) == "flatpak") {
        constexpr std::string_view commandOption = "--command=";
        for (std::size_t i = index + 1; i < arguments.size(); ++i) {
            if (arguments[i].starts_with(commandOption)) {
                return arguments[i].substr(commandOption.size());
            }
        }
    }
    return arguments[index];
}

struct Found {
    fs::path file;
    std::string id;
    std::size_t directoryRank;
};

void collect(const fs::path& folder, const std::string& idPrefix, std::size_t directoryRank,
             int depth, std::vector<Found>& found) {
    DirectoryListing listing(folder.c_str());
    while (const auto name = listing.next()) {
        const fs::path path = folder / *name;
        std::error_code error;
        if (name->ends_with(".desktop")) {
            found.push_back({path, idPrefix + std::string(*name), directoryRank});
        } else if (depth < maximumFolderDepth && fs::is_directory(path, error)) {
            collect(path, idPrefix + std::string(*name) + "-", directoryRank, depth + 1, found);
        }
    }
}

const DesktopApplication* lookUp(const std::unordered_map<std::string, std::size_t>& index,
                                 const std::vector<DesktopApplication>& applications,
                                 const std::string& key) {
    if (key.empty()) {
        return nullptr;
    }
    const auto found = index.find(key);
    return found == index.end() ? nullptr : &applications[found->second];
}

}  // namespace

DesktopApplicationIndex DesktopApplicationIndex::load(
    const std::vector<fs::path>& dataDirectories) {
    std::vector<Found> found;
    for (std::size_t rank = 0; rank < dataDirectories.size(); ++rank) {
        collect(dataDirectories[rank] / "applications", "", rank, 0, found);
    }
    // The directory listing order is the file system's; precedence must not depend on it.
    std::sort(found.begin(), found.end(), [](const Found& a, const Found& b) {
        return std::tie(a.directoryRank, a.id) < std::tie(b.directoryRank, b.id);
    });
    std::set<std::string> seenIds;
    std::vector<DesktopApplication> visible;
    std::vector<DesktopApplication> notDisplayed;
    for (Found& candidate : found) {
        if (!seenIds.insert(candidate.id).second) {
            continue;
        }
        std::optional<DesktopEntry> entry = DesktopEntries::read(candidate.file);
        if (!entry || entry->hidden) {
            continue;
        }
        auto& list = entry->noDisplay ? notDisplayed : visible;
        list.push_back({std::move(candidate.id), std::move(*entry)});
    }
    DesktopApplicationIndex index;
    for (auto* list : {&visible, &notDisplayed}) {
        for (DesktopApplication& application : *list) {
            index.add(std::move(application));
        }
    }
    return index;
}

void DesktopApplicationIndex::add(DesktopApplication application) {
    const std::size_t position = applications.size();
    const std::string program = startedProgram(DesktopEntries::commandLine(application.entry));
    for (const std::string& started : {program, application.entry.tryExec}) {
        if (started.empty()) {
            continue;
        }
        if (started.starts_with('/')) {
            byPath.try_emplace(started, position);
        }
        byProgram.try_emplace(std::string(fileName(started)), position);
    }
    if (!application.entry.startupWMClass.empty()) {
        byWindowClass.try_emplace(lowercased(application.entry.startupWMClass), position);
    }
    applications.push_back(std::move(application));
}

const DesktopApplication* DesktopApplicationIndex::match(std::string_view name,
                                                         const ProcessCommand& command) const {
    const std::string firstArgument = command.arguments.empty() ? "" : command.arguments.front();
    const std::string executableName(fileName(command.executable));
    // The name first: for a script it is the script's own name, while its executable is the
    // interpreter, which may have an entry of its own.
    const std::pair<const Index*, std::string> candidates[] = {
        {&byProgram, std::string(name)},
        {&byPath, command.executable},
        {&byPath, firstArgument.starts_with('/') ? firstArgument : ""},
        {&byProgram, executableName},
        {&byProgram, std::string(fileName(firstArgument))},
        {&byWindowClass, lowercased(name)},
        {&byWindowClass, lowercased(executableName)},
    };
    for (const auto& [index, key] : candidates) {
        if (const DesktopApplication* application = lookUp(*index, applications, key)) {
            return application;
        }
    }
    return nullptr;
}

}  // namespace corvane
