#pragma once

#include <filesystem>
#include <optional>

namespace corvane {

/// The `.app` folder four levels above `agentBundle`, the portable layout
/// `Corvane.app/Contents/Library/LoginItems/CorvaneAgent.app`; absent when that ancestor does
/// not end in ".app". Works on the path alone, touching no file; pure.
std::optional<std::filesystem::path> embeddingAppBundle(const std::filesystem::path& agentBundle);

}  // namespace corvane
