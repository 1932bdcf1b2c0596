#include "Platform/Linux/ExecutablePath.h"

#include <string>
#include <string_view>
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
    // Once the file was replaced (a rebuild, an update swap) the kernel marks the link; the
    // path itself, which now holds the new program, is what a relaunch must start.
    std::string text = path.string();
    constexpr std::string_view deletedMark = " (deleted)";
    if (text.ends_with(deletedMark)) {
        text.resize(text.size() - deletedMark.size());
    }
    return std::filesystem::path(text);
}

}  // namespace corvane
