#pragma once

#include <sys/types.h>

#include <filesystem>
#include <vector>

namespace corvane {

/// The processes of an installed application, and the means to end them. Main thread only.
class RunningApplications {
public:
    virtual ~RunningApplications() = default;

    /// The processes, other than this one, whose executable lies inside `bundle`; empty when
    /// none run or the process list cannot be read.
    virtual std::vector<pid_t> runningFrom(const std::filesystem::path& bundle) = 0;
    /// Asks the process to end (it may clean up first).
    virtual void terminate(pid_t process) = 0;
    /// Whether the process has ended (or can no longer be seen).
    virtual bool isTerminated(pid_t process) = 0;
    /// Ends the process without asking.
    virtual void forceTerminate(pid_t process) = 0;
};

}  // namespace corvane
