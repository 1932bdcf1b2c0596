#include "tools/corvanectl/CtlCommand.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "Foundation/ArgumentText.h"
#include "Foundation/EnumNames.h"
#include "Foundation/NumberParsing.h"
#include "Foundation/UsageText.h"

namespace corvane {

namespace {

using Verb = CtlCommand::Verb;
using ValueType = CtlCommand::ValueType;

// The flags of set that type its value.
constexpr std::array<EnumName<ValueType>, 3> typeFlags{{
    {ValueType::boolean, "--bool"},
    {ValueType::number, "--double"},
    {ValueType::string, "--string"},
}};

constexpr std::array<EnumName<CtlCommand::AutostartAction>, 3> autostartActions{{
    {CtlCommand::AutostartAction::on, "on"},
    {CtlCommand::AutostartAction::off, "off"},
    {CtlCommand::AutostartAction::status, "status"},
}};

struct Command;
using ParseOperands = std::variant<CtlCommand, CtlUsageError> (*)(
    const Command& command, std::span<const std::string_view> operands);

/// One command of the command line: how it is spelled, parsed and shown in --help.
struct Command {
    Verb verb;
    std::string_view name;
    /// What follows the name in --help ("KEY"); empty for a command that takes nothing.
    std::string_view operands;
    /// The --help description, '\n' between its lines.
    std::string_view help;
    ParseOperands parse;
};

bool equalsIgnoringCase(std::string_view text, std::string_view lowercase) {
    return std::equal(
        text.begin(), text.end(), lowercase.begin(), lowercase.end(),
        [](char a, char b) { return std::tolower(static_cast<unsigned char>(a)) == b; });
}

std::optional<bool> parseBoolean(std::string_view text) {
    for (std::string_view yes : {"true", "yes", "1"}) {
        if (equalsIgnoringCase(text, yes)) {
            return true;
        }
    }
    for (std::string_view no : {"false", "no", "0"}) {
        if (equalsIgnoringCase(text, no)) {
            return false;
        }
    }
    return std::nullopt;
}

// Anywhere on the line, as most tools take it; a value can therefore not be "-h" or "--help".
bool asksForHelp(std::span<const std::string_view> arguments) {
    return std::any_of(arguments.begin(), arguments.end(), [](std::string_view argument) {
        return argument == "--help" || argument == "-h";
    });
}

std::string quoted(std::string_view text) {
    return quotedArgument(text);
}

std::variant<CtlCommand, CtlUsageError> parseKey(const Command& entry,
                                                 std::span<const std::string_view> operands) {
    if (operands.size() != 1 || operands[0].empty()) {
        return CtlUsageError{std::string(entry.name) + " needs exactly one key"};
    }
    return CtlCommand{.verb = entry.verb, .key = std::string(operands[0])};
}

std::variant<CtlCommand, CtlUsageError> parseNothing(const Command& entry,
                                                     std::span<const std::string_view> operands) {
    if (!operands.empty()) {
        return CtlUsageError{std::string(entry.name) + " takes no arguments"};
    }
    return CtlCommand{.verb = entry.verb};
}

std::variant<CtlCommand, CtlUsageError> parseSet(const Command& entry,
                                                 std::span<const std::string_view> operands) {
    std::optional<ValueType> type;
    std::vector<std::string_view> positional;
    for (std::string_view operand : operands) {
        if (auto flag = enumFromRaw(typeFlags, operand)) {
            if (type) {
                return CtlUsageError{"set takes one of --bool, --double, --string"};
            }
            type = flag;
        } else {
            positional.push_back(operand);
        }
    }
    if (positional.size() != 2 || positional[0].empty()) {
        return CtlUsageError{"set needs a key and a value"};
    }
    auto value = settingFromText(positional[1], type.value_or(ValueType::inferred));
    if (!value) {
        return CtlUsageError{"set: " + quoted(positional[1]) + " is not " +
                             (type == ValueType::boolean ? "true or false" : "a number")};
    }
    return CtlCommand{
        .verb = entry.verb, .key = std::string(positional[0]), .value = std::move(*value)};
}

std::variant<CtlCommand, CtlUsageError> parseSignals(const Command& entry,
                                                     std::span<const std::string_view> operands) {
    CtlCommand command{.verb = entry.verb};
    for (std::string_view operand : operands) {
        auto signal = SharedSettings::signalFromCaseName(operand);
        if (!signal) {
            return CtlUsageError{"unknown signal " + quoted(operand) + " (see --help)"};
        }
        // Listening twice would print every delivery twice.
        if (std::find(command.signalCases.begin(), command.signalCases.end(), *signal) ==
            command.signalCases.end()) {
            command.signalCases.push_back(*signal);
        }
    }
    if (command.verb == Verb::post && command.signalCases.size() != 1) {
        return CtlUsageError{"post needs exactly one signal"};
    }
    if (command.signalCases.empty()) {
        command.signalCases.assign(std::begin(SharedSettings::allSignals),
                                   std::end(SharedSettings::allSignals));
    }
    return command;
}

std::variant<CtlCommand, CtlUsageError> parseAutostart(const Command& entry,
                                                       std::span<const std::string_view> operands) {
    const auto action =
        operands.size() == 1 ? enumFromRaw(autostartActions, operands[0]) : std::nullopt;
    if (!action) {
        return CtlUsageError{"autostart needs one of on, off, status"};
    }
    return CtlCommand{.verb = entry.verb, .autostart = *action};
}

// Every command, in the order --help lists them. A new command is one row here (and its case
// in CtlCommand::Verb); parsing and the usage text come from the row.
constexpr Command commands[] = {
    {Verb::get, "get", "KEY",
     "print the value of KEY (its factory default when none is\n"
     "stored); exit status 1 when it has none",
     parseKey},
    {Verb::set, "set", "KEY VALUE [--bool|--double|--string]",
     "store VALUE under KEY; without a type flag, true and false\n"
     "are Booleans, numbers are numbers, anything else is text",
     parseSet},
    {Verb::remove, "delete", "KEY", "remove the stored value; the factory default answers again",
     parseKey},
    {Verb::list, "list", "",
     "print every key with its value as JSON, stored values over\n"
     "factory defaults, one per line",
     parseNothing},
    {Verb::post, "post", "SIGNAL", "post SIGNAL to every listener of this suite", parseSignals},
    {Verb::watch, "watch", "[SIGNAL...]",
     "print the name of each signal received, one per line, until\n"
     "interrupted (every signal when none is named)",
     parseSignals},
    {Verb::autostart, "autostart", "on|off|status",
     "start the agent at login or not (an XDG autostart entry),\n"
     "or print on, off or elsewhere PROGRAM",
     parseAutostart},
};

}  // namespace

std::optional<SettingValue> settingFromText(std::string_view text, ValueType type) {
    switch (type) {
        case ValueType::boolean:
            if (auto flag = parseBoolean(text)) {
                return SettingValue(*flag);
            }
            return std::nullopt;
        case ValueType::number:
            if (auto number = parseNumber<double>(text)) {
                return SettingValue(*number);
            }
            return std::nullopt;
        case ValueType::string: return SettingValue(std::string(text));
        case ValueType::inferred: break;
    }
    if (text == "true" || text == "false") {
        return SettingValue(text == "true");
    }
    if (auto number = parseNumber<double>(text)) {
        return SettingValue(*number);
    }
    return SettingValue(std::string(text));
}

std::variant<CtlCommand, CtlUsageError> parseCtlArguments(
    std::span<const std::string_view> arguments) {
    if (asksForHelp(arguments)) {
        return CtlCommand{};
    }
    if (arguments.empty()) {
        return CtlUsageError{"missing command (see --help)"};
    }
    // The settings file holds JSON, which is UTF-8: a key or a text in another encoding would
    // be stored as something else than was typed.
    if (const auto argument = firstArgumentNotUTF8(arguments)) {
        return CtlUsageError{quoted(*argument) + " is not valid UTF-8"};
    }
    for (const Command& command : commands) {
        if (command.name == arguments[0]) {
            return command.parse(command, arguments.subspan(1));
        }
    }
    return CtlUsageError{"unknown command " + quoted(arguments[0]) + " (see --help)"};
}

std::string ctlUsage() {
    std::string text = R"(Usage: corvanectl COMMAND [ARGUMENTS]

Reads and writes the settings Corvane shares with its agent, and posts and watches
the signals they exchange.

Commands:
)";
    for (const Command& command : commands) {
        std::string synopsis(command.name);
        if (!command.operands.empty()) {
            synopsis.append(" ").append(command.operands);
        }
        appendUsageEntry(text, synopsis, command.help);
    }
    appendUsageEntry(text, "-h, --help", "show this text");
    text += R"(
Signals: settings, quitAgent, openSettings, checkForUpdates, updateAvailable,
menuBarChanged. set and delete only change the file; post settings afterwards
tells every listener to re-read it.

Settings: $XDG_CONFIG_HOME/corvane/<suite>.json (default ~/.config/corvane); the
suite is the application group, or $CORVANE_SETTINGS_SUITE when set. Signals are
D-Bus signals on the session bus, named after the suite.

Login item: $XDG_CONFIG_HOME/autostart/<agent identifier>.desktop (default
~/.config/autostart); CORVANE_NO_LOGIN_ITEM (not 0) leaves it alone.

Exit status: 0 on success; 1 when get finds no value, a write fails, there is no
session bus or autostart is refused; 2 for a bad command line or a settings file
that cannot be read.
)";
    return text;
}

}  // namespace corvane
