#pragma once

#include <filesystem>
#include <string>

#include "Platform/ProcessCommands.h"

namespace corvane {

/// Process commands from procfs under the given root (the real one or a fixture tree):
/// /proc/[pid]/exe for the executable and /proc/[pid]/cmdline for the arguments.
class LinuxProcessCommands final : public ProcessCommands {
public:
    explicit LinuxProcessCommands(const std::filesystem::path& procRoot = "/proc");

    /// Absent when neither the executable nor the command line can be read.
    std::optional<ProcessCommand> command(std::int32_t pid) override;

private:
    std::filesystem::path root;
};

}  // namespace corvane
