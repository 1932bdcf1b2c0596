#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <string>

#include "CorvaneShared/SettingsStore.h"
#include "tools/corvanectl/CtlCommand.h"

namespace corvane {

/// A value as `get` prints it: text as it is, Booleans as true or false, numbers in their
/// shortest form, anything else as compact JSON.
std::string settingText(const SettingValue& value);

/// Why the settings file cannot be read, in one line; absent when it is missing (it reads as
/// empty) or holds what the settings store reads as settings. Commands refuse any other file
/// (not a JSON object, too large, nested too deep) rather than have a write set it aside and
/// start over.
std::optional<std::string> settingsFileProblem(const std::filesystem::path& file);

/// Runs get, set, delete or list on `store`, whose factory defaults are registered. Prints
/// results to `out`, a one-line message to `errors`; answers the exit status.
int runSettingsCommand(const CtlCommand& command, SettingsStore& store, std::ostream& out,
                       std::ostream& errors);

}  // namespace corvane
