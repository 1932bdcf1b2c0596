#pragma once

#include <filesystem>
#include <optional>
#include <variant>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneShared/AppLanguage.h"
#include "Platform/Linux/CompiledTranslations.h"

namespace corvane {

/// The options of `argv`; or, when it asks for help or is refused, the status to end with, the
/// usage or the one-line refusal already printed. Both agent programs start here, so a command
/// line reads alike whichever of them is run.
std::variant<AgentOptions, int> readAgentCommandLine(int argc, char** argv);

/// The bundle this program runs from, its translations, and the language they are spoken in,
/// recorded as the launch language and made the process's own. Made before any toolkit starts,
/// since toolkits read the process's languages when they do.
struct AgentLanguage {
    AgentLanguage();

    AgentLanguage(const AgentLanguage&) = delete;
    AgentLanguage& operator=(const AgentLanguage&) = delete;

    std::optional<std::filesystem::path> bundle;
    CompiledTranslations translations;
    AppLanguage language;
};

}  // namespace corvane
