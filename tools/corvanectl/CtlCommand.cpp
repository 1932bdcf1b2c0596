#include "tools/corvanectl/CtlCommand.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "Foundation/EnumNames.h"
#include "Foundation/NumberParsing.h"

namespace corvane {

namespace {

using Verb = CtlCommand::Verb;
using ValueType = CtlCommand::ValueType;

constexpr std::array<EnumName<Verb>, 6> verbNames{{
    {Verb::get, "get"},
    {Verb::set, "set"},
    {Verb::remove, "delete"},
    {Verb::list, "list"},
    {Verb::post, "post"},
    {Verb::watch, "watch"},
}};

std::optional<ValueType> typeFlag(std::string_view argument) {
    if (argument == "--bool") {
        return ValueType::boolean;
    }
    if (argument == "--double") {
        return ValueType::number;
    }
    if (argument == "--string") {
        return ValueType::string;
    }
    return std::nullopt;
}

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
    return "'" + std::string(text) + "'";
}

std::variant<CtlCommand, CtlUsageError> parseSet(CtlCommand command,
                                                 std::span<const std::string_view> operands) {
    std::optional<ValueType> type;
    std::vector<std::string_view> positional;
    for (std::string_view operand : operands) {
        if (auto flag = typeFlag(operand)) {
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
    command.key = positional[0];
    command.value = std::move(*value);
    return command;
}

std::variant<CtlCommand, CtlUsageError> parseSignals(CtlCommand command,
                                                     std::span<const std::string_view> operands) {
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
    const auto verb = enumFromRaw(verbNames, arguments[0]);
    if (!verb) {
        return CtlUsageError{"unknown command " + quoted(arguments[0]) + " (see --help)"};
    }
    CtlCommand command;
    command.verb = *verb;
    const auto operands = arguments.subspan(1);
    switch (command.verb) {
        case Verb::set: return parseSet(std::move(command), operands);
        case Verb::post:
        case Verb::watch: return parseSignals(std::move(command), operands);
        case Verb::get:
        case Verb::remove:
            if (operands.size() != 1 || operands[0].empty()) {
                return CtlUsageError{std::string(arguments[0]) + " needs exactly one key"};
            }
            command.key = operands[0];
            return command;
        case Verb::list:
            if (!operands.empty()) {
                return CtlUsageError{"list takes no arguments"};
            }
            return command;
        case Verb::help: break;
    }
    return command;
}

std::string ctlUsage() {
    return R"(Usage: corvanectl COMMAND [ARGUMENTS]

Reads and writes the settings Corvane shares with its agent, and posts and watches
the signals they exchange.

Commands:
  get KEY              print the value of KEY (its factory default when none is
                       stored); exit status 1 when it has none
  set KEY VALUE [--bool|--double|--string]
                       store VALUE under KEY; without a type flag, true and false
                       are Booleans, numbers are numbers, anything else is text
  delete KEY           remove the stored value; the factory default answers again
  list                 print every key with its value as JSON, stored values over
                       factory defaults, one per line
  post SIGNAL          post SIGNAL to every listener of this suite
  watch [SIGNAL...]    print the name of each signal received, one per line, until
                       interrupted (every signal when none is named)
  -h, --help           show this text

Signals: settings, quitAgent, openSettings, checkForUpdates, updateAvailable,
menuBarChanged. set and delete only change the file; post settings afterwards
tells every listener to re-read it.

Settings: $XDG_CONFIG_HOME/corvane/<suite>.json (default ~/.config/corvane); the
suite is the application group, or $CORVANE_SETTINGS_SUITE when set. Signals are
D-Bus signals on the session bus, named after the suite.

Exit status: 0 on success; 1 when get finds no value, a write fails or there is
no session bus; 2 for a bad command line or a settings file that cannot be read.
)";
}

}  // namespace corvane
