#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "CorvaneShared/SettingsStore.h"
#include "CorvaneShared/SharedSettings.h"

namespace corvane {

/// What `corvanectl` was asked to do.
struct CtlCommand {
    enum class Verb { help, get, set, remove, list, post, watch, autostart };
    /// How `set` types its value.
    enum class ValueType { inferred, boolean, number, string };
    /// What autostart does with the agent's login item.
    enum class AutostartAction { on, off, status };

    Verb verb = Verb::help;
    /// The key of get, set and delete.
    std::string key;
    /// The value of set, typed as asked or inferred.
    SettingValue value;
    /// The one signal of post; those of watch, each once, in the order named (every signal
    /// when none was named).
    std::vector<SharedSettings::Signal> signalCases;
    /// The action of autostart.
    AutostartAction autostart = AutostartAction::status;
};

/// Why the command line was refused, in one line without the program name.
struct CtlUsageError {
    std::string message;
};

/// The value `text` stands for as `type`: "true"/"false" (also "yes"/"no"/"1"/"0", any case)
/// for a Boolean, a finite decimal number for a number, anything for a string; inferred, a
/// Boolean for exactly "true" or "false", else a number when all of it is one, else the text.
/// Absent when the text is not of the asked type.
std::optional<SettingValue> settingFromText(std::string_view text, CtlCommand::ValueType type);

/// Parses the arguments after the program name.
std::variant<CtlCommand, CtlUsageError> parseCtlArguments(
    std::span<const std::string_view> arguments);

/// The text `--help` prints.
std::string ctlUsage();

}  // namespace corvane
