#include "Platform/Updates/BundleProcesses.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

#include "Foundation/DirectoryListing.h"
#include "Foundation/NumberParsing.h"

namespace corvane {

namespace {

namespace fs = std::filesystem;

std::optional<pid_t> processIdOf(std::string_view name) {
    const std::optional<pid_t> pid = parseNumber<pid_t>(name);
    if (!pid || *pid <= 0) {
        return std::nullopt;
    }
    return pid;
}

bool isInside(const fs::path& file, const fs::path& folder) {
    const auto [folderEnd, fileAt] =
        std::mismatch(folder.begin(), folder.end(), file.begin(), file.end());
    return folderEnd == folder.end() && fileAt != file.end();
}

// The state letter of /proc/<pid>/stat follows the command name in parentheses, which may
// itself hold blanks and parentheses: read from the last ')'.
char processState(const fs::path& statFile) {
    std::ifstream stream(statFile);
    std::string line;
    std::getline(stream, line);
    const auto close = line.rfind(')');
    return close != std::string::npos && close + 2 < line.size() ? line[close + 2] : '\0';
}

}  // namespace

BundleProcesses::BundleProcesses(fs::path procfs) : procfs(std::move(procfs)) {}

std::vector<pid_t> BundleProcesses::runningFrom(const fs::path& bundle) {
    std::vector<pid_t> found;
    std::error_code error;
    const fs::path folder = fs::weakly_canonical(bundle, error);
    if (error) {
        return found;
    }
    const pid_t self = ::getpid();
    // Processes come and go while the list is read; DirectoryListing never throws, where a
    // directory_iterator's increment does on a read error.
    DirectoryListing processes(procfs.c_str());
    while (const std::optional<std::string_view> name = processes.next()) {
        const std::optional<pid_t> pid = processIdOf(*name);
        if (!pid || *pid == self) {
            continue;
        }
        std::error_code unreadable;
        const fs::path executable = fs::read_symlink(procfs / *name / "exe", unreadable);
        if (!unreadable && isInside(executable, folder)) {
            found.push_back(*pid);
        }
    }
    return found;
}

void BundleProcesses::terminate(pid_t process) {
    ::kill(process, SIGTERM);
}

bool BundleProcesses::isTerminated(pid_t process) {
    if (::kill(process, 0) != 0 && errno == ESRCH) {
        return true;
    }
    const char state = processState(procfs / std::to_string(process) / "stat");
    return state == 'Z' || state == 'X' || state == '\0';
}

void BundleProcesses::forceTerminate(pid_t process) {
    ::kill(process, SIGKILL);
}

}  // namespace corvane
