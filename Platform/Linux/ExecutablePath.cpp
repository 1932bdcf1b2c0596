#include "Platform/Linux/ExecutablePath.h"

#include <system_error>

namespace corvane {

std::optional<std::filesystem::path> currentExecutablePath() {
    // argv[0] may be a bare name found through PATH, or a symbolic link into another tree; the
    // kernel's link names the file that actually runs.
    std::error_code error;
    std::filesystem::path path = std::filesystem::read_symlink("/proc/self/exe", error);
    if (error || path.empty()) {
        return std::nullopt;
    }
    return path;
}

}  // namespace corvane
