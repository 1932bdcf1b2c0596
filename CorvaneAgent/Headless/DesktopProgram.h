#pragma once

#include <filesystem>
#include <optional>

namespace corvane {

/// The agent is two programs. `bin/corvane-agent` is the front: it loads no toolkit, runs the
/// headless modes (`--stream`, `--snapshot`) itself and replaces itself by the desktop program
/// for every other mode. The desktop program (Qt: the menu bar, `--render`, updates) is
/// `libexec/corvane-agent`, with the same name so that process listings, the single-instance
/// rule and `pidof` see one agent whichever of the two runs.
inline constexpr const char* desktopProgramFolder = "libexec";

/// The desktop program beside the front `frontExecutable`: `../libexec/corvane-agent` in an
/// installed tree or a bundle (`bin/` beside `libexec/`), else `libexec/corvane-agent` in the
/// build tree (the front in the build folder itself). Absent when neither is an executable
/// regular file.
std::optional<std::filesystem::path> desktopProgramOf(const std::filesystem::path& frontExecutable);

}  // namespace corvane
