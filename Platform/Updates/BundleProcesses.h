#pragma once

#include <filesystem>
#include <vector>

#include "Platform/RunningApplications.h"

namespace corvane {

/// The processes running from a bundle, found through `/proc/<pid>/exe` (the processes of
/// other users cannot be seen, nor ended), ended with SIGTERM and SIGKILL. Main thread.
class BundleProcesses final : public RunningApplications {
public:
    /// Reads the process list under `procfs`.
    explicit BundleProcesses(std::filesystem::path procfs = "/proc");

    std::vector<pid_t> runningFrom(const std::filesystem::path& bundle) override;
    void terminate(pid_t process) override;
    /// True once the process is gone or a zombie (it has ended; only its parent's wait is due).
    bool isTerminated(pid_t process) override;
    void forceTerminate(pid_t process) override;

private:
    std::filesystem::path procfs;
};

}  // namespace corvane
