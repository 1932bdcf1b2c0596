#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace corvane {

/// What a running process was started as.
struct ProcessCommand {
    /// The file it executes, with symbolic links resolved; empty when that cannot be read (a
    /// kernel thread, another user's process).
    std::string executable;
    /// The arguments it was started with or has since set, the program first; empty for a
    /// kernel thread. Long command lines may be cut after their first few kilobytes.
    std::vector<std::string> arguments;

    friend bool operator==(const ProcessCommand&, const ProcessCommand&) = default;
};

/// Looks up what running processes execute. Any thread, one call at a time.
class ProcessCommands {
public:
    virtual ~ProcessCommands() = default;
    /// The command of process `pid`; absent when the process is gone or cannot be inspected.
    virtual std::optional<ProcessCommand> command(std::int32_t pid) = 0;
};

}  // namespace corvane
