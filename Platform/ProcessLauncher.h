#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// A program to start that outlives the one starting it.
struct DetachedLaunch {
    /// A path, or a name looked up in PATH.
    std::string program;
    std::vector<std::string> arguments;
    /// Absent: the starting process's working directory.
    std::optional<std::filesystem::path> workingDirectory;
    /// Set in the new process on top of the environment of the one starting it.
    std::map<std::string, std::string> environment;

    friend bool operator==(const DetachedLaunch&, const DetachedLaunch&) = default;
};

/// Starts a program detached from this process; false when it could not be started. Does not
/// wait for it. Main thread.
using ProcessLauncher = std::function<bool(const DetachedLaunch&)>;

/// How `/bin/sh` waits for `pid` to end and then starts `executable` with `arguments`, detached:
/// a program starting itself again, whose new copy must not meet the old one. Both reach the
/// script as positional parameters, never as script text, so no path can break or extend the
/// command.
inline DetachedLaunch relaunchCommand(std::int32_t pid, const std::string& executable,
                                      const std::vector<std::string>& arguments) {
    // $1 is the pid to wait for; after the shift, "$@" is the executable and its arguments.
    constexpr const char* script =
        "while kill -0 \"$1\" 2>/dev/null; do sleep 0.1; done; shift; exec \"$@\"";
    DetachedLaunch launch{
        .program = "/bin/sh",
        .arguments = {"-c", script, "corvane-relaunch", std::to_string(pid), executable}};
    launch.arguments.insert(launch.arguments.end(), arguments.begin(), arguments.end());
    return launch;
}

}  // namespace corvane
