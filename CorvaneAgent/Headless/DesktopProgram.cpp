#include "CorvaneAgent/Headless/DesktopProgram.h"

#include <unistd.h>

#include <array>
#include <system_error>

namespace corvane {

std::optional<std::filesystem::path> desktopProgramOf(
    const std::filesystem::path& frontExecutable) {
    namespace fs = std::filesystem;
    const fs::path folder = frontExecutable.parent_path();
    const fs::path name = frontExecutable.filename();
    const std::array candidates = {
        folder.parent_path() / desktopProgramFolder / name,
        folder / desktopProgramFolder / name,
    };
    for (const fs::path& candidate : candidates) {
        std::error_code error;
        if (fs::is_regular_file(candidate, error) && ::access(candidate.c_str(), X_OK) == 0) {
            return candidate;
        }
    }
    return std::nullopt;
}

}  // namespace corvane
