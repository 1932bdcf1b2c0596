#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "CorvaneShared/AutostartEntry.h"
#include "CorvaneShared/LoginItemPolicy.h"

namespace corvane {

/// Where the agent's login item lives and what may be done about it.
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

/// Switching the agent's login item on and off, for the companion programs (the settings
/// window and corvanectl). Reads and writes the disk on every call; any thread.
namespace LoginItem {

/// The place of the companion program at `companion` in this process: the entry named after
/// the agent's bundle identifier in this process's autostart folder, the agent of that
/// companion (see AutostartEntry::agentOfCompanion), this process's environment and mounts.
AutostartPlace processPlace(const std::optional<std::filesystem::path>& companion,
                            std::span<const std::string> arguments);

/// What the entry does about the agent; `off` without a configuration folder.
AutostartEntry::Status status(const AutostartPlace& place);

/// Writes (`on`) or removes the entry. Why not, in one line, when the policy suppresses the
/// login item, there is no configuration folder, the agent is missing or translocated (for
/// `on`), or the disk refuses.
std::optional<std::string> set(bool on, const AutostartPlace& place);

}  // namespace LoginItem

}  // namespace corvane
