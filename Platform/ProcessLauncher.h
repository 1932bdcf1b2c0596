#pragma once

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

}  // namespace corvane
