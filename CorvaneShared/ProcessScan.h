#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "Platform/ProcessTable.h"

/// The running copies of the agent, found by what they run.
namespace corvane::ProcessScan {

/// A running copy: its pid, start time and executable.
using Entry = ProcessRecord;

/// What every copy's executable path ends with, wherever it is installed.
inline constexpr std::string_view agentPathSuffix = "/corvane-agent";

/// The processes of `user` in `table` that run an agent executable, by ascending pid; empty
/// when the table cannot be read. Any thread.
std::vector<Entry> runningAgents(const ProcessTable& table, std::uint32_t user);

}  // namespace corvane::ProcessScan
