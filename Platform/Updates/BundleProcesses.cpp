#include "Platform/Updates/BundleProcesses.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

namespace corvane {

namespace {

namespace fs = std::filesystem;

std::optional<pid_t> processIdOf(const std::string& name) {
    pid_t pid = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (error != std::errc{} || end != name.data() + name.size() || pid <= 0) {
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
    for (const auto& entry : fs::directory_iterator(procfs, error)) {
        const std::optional<pid_t> pid = processIdOf(entry.path().filename().string());
        if (!pid || *pid == self) {
            continue;
        }
        std::error_code unreadable;
        const fs::path executable = fs::read_symlink(entry.path() / "exe", unreadable);
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
