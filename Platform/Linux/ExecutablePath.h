#pragma once

#include <filesystem>
#include <optional>

namespace corvane {

/// The file this process runs, with every symbolic link resolved (the kernel's
/// `/proc/self/exe`), the path it was started from even when that file was replaced since;
/// absent when procfs is not mounted. Any thread.
std::optional<std::filesystem::path> currentExecutablePath();

}  // namespace corvane
