#pragma once

#include <filesystem>
#include <optional>

#include "CorvaneAgent/AgentDelegate.h"

namespace corvane {

class AppLanguage;
struct AgentOptions;

/// Runs the menu-bar agent until it is told to end: the application, the signals it listens
/// for, the settings watch, the journal and the AgentDelegate with its monitor, menu bar and
/// updates. `makeMenuBar` builds the menu bar once the monitor runs (absent: none). Without a
/// display to show a menu bar on it says so in one line and returns 1. Needs no application
/// object yet; returns the process's exit status.
int runAgent(int& argc, char** argv, const AgentOptions& options, AppLanguage& language,
             const std::optional<std::filesystem::path>& bundle, MenuBarFactory makeMenuBar);

}  // namespace corvane
