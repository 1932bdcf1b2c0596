#pragma once

#include <filesystem>
#include <optional>

#include "CorvaneAgent/AgentDelegate.h"

namespace corvane {

class AppLanguage;
struct AgentOptions;

/// Runs the menu-bar agent until it is told to end: the application, the signals it listens
/// for, the settings watch, the journal and the AgentDelegate with its monitor, menu bar and
/// updates. The menu bar (`DesktopMenuBar`, on the host `options` ask for) stands once the
/// monitor runs. Without a display, or a host to show the menu bar in, it says so in one line
/// and returns 1. Needs no application object yet; returns the process's exit status.
int runAgent(int& argc, char** argv, const AgentOptions& options, AppLanguage& language,
             const std::optional<std::filesystem::path>& bundle);

}  // namespace corvane
