#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <span>
#include <string>

#include "CorvaneShared/LoginItemPolicy.h"
#include "tools/corvanectl/CtlCommand.h"

namespace corvane {

/// Where autostart looks and what it may do.
struct AutostartPlace {
    /// The entry's file; absent when there is no configuration folder.
    std::optional<std::filesystem::path> entryFile;
    /// The agent the entry starts; absent when it was not found.
    std::optional<std::filesystem::path> agent;
    /// The environment and arguments LoginItemPolicy::isSuppressed reads.
    SharedSettings::EnvironmentLookup environment;
    std::span<const std::string> arguments;
    LoginItemPolicy::PlaceLookups places;
};

/// Runs autostart on|off|status. `on` and `off` refuse while the policy suppresses the login
/// item; `on` also when the agent is missing or translocated. Prints the status to `out`, a
/// one-line message to `errors`; answers the exit status (1 for a refusal or failure).
int runAutostartCommand(const CtlCommand& command, const AutostartPlace& place, std::ostream& out,
                        std::ostream& errors);

}  // namespace corvane
