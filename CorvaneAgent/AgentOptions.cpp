#include "CorvaneAgent/AgentOptions.h"

#include <system_error>
#include <utility>

#include "Foundation/ArgumentText.h"
#include "Foundation/NumberParsing.h"
#include "Foundation/UsageText.h"

namespace corvane {

namespace {

constexpr double minimumInterval = 0.01;
constexpr double maximumInterval = 3600.0;
constexpr int maximumRefreshes = 1'000'000;
// The --help text of --refreshes names this number.
static_assert(defaultSnapshotRefreshes == 4);

using Mode = AgentOptions::Mode;

ArgumentError badValue(std::string_view flag, std::string_view value, std::string_view expected) {
    return {std::string(flag) + ": " + quotedArgument(value) + " is not " + std::string(expected)};
}

struct Flag;
/// What a flag does to the options, given its value (empty for a flag that takes none).
using ApplyFlag = std::optional<ArgumentError> (*)(AgentOptions& options, const Flag& flag,
                                                   std::string_view value);

/// One flag of the command line: how it is spelled, parsed and shown in --help.
struct Flag {
    std::string_view name;
    /// The one-letter spelling, if any.
    std::string_view shortName;
    /// How --help names the value ("N"); empty for a flag that takes no value.
    std::string_view valueName;
    /// What the flag needs when its value is missing ("a count").
    std::string_view needs;
    /// The --help description, '\n' between its lines.
    std::string_view help;
    ApplyFlag apply;

    bool takesValue() const { return !valueName.empty(); }
    bool isSpelled(std::string_view argument) const {
        return argument == name || (!shortName.empty() && argument == shortName);
    }
    ArgumentError missingValue() const {
        return {std::string(name) + " needs " + std::string(needs)};
    }
};

std::optional<ArgumentError> setMode(AgentOptions& options, const Flag& flag, Mode mode) {
    if (options.mode != Mode::menuBar && options.mode != mode) {
        return ArgumentError{std::string(flag.name) + " cannot be combined with another mode"};
    }
    options.mode = mode;
    return std::nullopt;
}

std::optional<ArgumentError> setDirectory(std::filesystem::path& root, const Flag& flag,
                                          std::string_view value) {
    if (value.empty()) {
        return flag.missingValue();
    }
    root = std::filesystem::path(value);
    std::error_code error;
    if (!std::filesystem::is_directory(root, error)) {
        return badValue(flag.name, root.string(), "a directory");
    }
    return std::nullopt;
}

// Every flag, in the order --help lists them. A new flag is one row here (and its member in
// AgentOptions); parsing, the checks of its value and the usage text all come from the row.
constexpr Flag flags[] = {
    {"--snapshot", "", "", "",
     "take --refreshes samples, wait for the background work they\n"
     "started, print one JSON object of every reading, and exit",
     [](AgentOptions& options, const Flag& flag, std::string_view) {
         return setMode(options, flag, Mode::snapshot);
     }},
    {"--stream", "", "", "",
     "print one JSON line per refresh until interrupted\n"
     "(or until --refreshes samples, when given)",
     [](AgentOptions& options, const Flag& flag, std::string_view) {
         return setMode(options, flag, Mode::stream);
     }},
    {"--render", "", "DIR", "a directory",
     "sample as --snapshot does, then draw every shown meter\n"
     "into DIR (created when missing): meter-SECTION.png on a\n"
     "dark menu bar and meter-SECTION-light.png on a light one,\n"
     "the detail panels as panel-SECTION.png and\n"
     "panel-SECTION-light.png, all at 2 pixels per point, and\n"
     "layout.json with each meter's widths, draw signature and\n"
     "image size and each panel's fit; needs no display",
     [](AgentOptions& options, const Flag& flag,
        std::string_view value) -> std::optional<ArgumentError> {
         if (value.empty()) {
             return flag.missingValue();
         }
         options.renderDirectory = std::filesystem::path(value);
         // Made when missing, so only something else in its place is refused here.
         if (namesOtherKindThan(options.renderDirectory, std::filesystem::file_type::directory)) {
             return badValue(flag.name, value, "a directory");
         }
         return setMode(options, flag, Mode::render);
     }},
    {"--refreshes", "", "N", "a count",
     "how many refreshes (default for --snapshot and --render: 4,\n"
     "which scans the processes twice, so CPU shares and disk\n"
     "rates cover the time between the scans)",
     [](AgentOptions& options, const Flag& flag,
        std::string_view value) -> std::optional<ArgumentError> {
         const auto count = parseNumber<int>(value);
         if (!count || *count < 1 || *count > maximumRefreshes) {
             return badValue(flag.name, value, "a whole number from 1 to 1000000");
         }
         options.refreshes = count;
         return std::nullopt;
     }},
    {"--interval", "", "S", "a number of seconds",
     "seconds between refreshes, 0.01 to 3600\n"
     "(default: the \"refreshInterval\" setting, 1 second)",
     [](AgentOptions& options, const Flag& flag,
        std::string_view value) -> std::optional<ArgumentError> {
         const auto seconds = parseNumber<double>(value);
         if (!seconds || *seconds < minimumInterval || *seconds > maximumInterval) {
             return badValue(flag.name, value, "a number of seconds from 0.01 to 3600");
         }
         options.interval = seconds;
         return std::nullopt;
     }},
    {"--open", "", "SECTION", "a section",
     "sample as if SECTION's panel were open: cpu, memory,\n"
     "storage or sensors (repeatable)",
     [](AgentOptions& options, const Flag& flag,
        std::string_view value) -> std::optional<ArgumentError> {
         const auto section = sectionFromKey(value);
         if (!section) {
             return badValue(flag.name, value, "one of cpu, memory, storage, sensors");
         }
         options.openSections.push_back(*section);
         return std::nullopt;
     }},
    {"--procfs", "", "DIR", "a directory", "read /proc from DIR (default /proc)",
     [](AgentOptions& options, const Flag& flag, std::string_view value) {
         return setDirectory(options.procfs, flag, value);
     }},
    {"--sysfs", "", "DIR", "a directory", "read /sys from DIR (default /sys)",
     [](AgentOptions& options, const Flag& flag, std::string_view value) {
         return setDirectory(options.sysfs, flag, value);
     }},
    {"--smc-table", "", "FILE", "a file",
     "read temperatures, fans and power from a recorded\n"
     "controller table (also $CORVANE_SMC_TABLE)",
     [](AgentOptions& options, const Flag& flag,
        std::string_view value) -> std::optional<ArgumentError> {
         if (value.empty()) {
             return flag.missingValue();
         }
         options.smcTable = std::filesystem::path(value);
         // A directory or a FIFO here would be found out only when the sensors first read
         // it, after the command line was accepted; a FIFO would even hang that read.
         std::error_code error;
         if (!std::filesystem::is_regular_file(*options.smcTable, error)) {
             return badValue(flag.name, value, "a file");
         }
         return std::nullopt;
     }},
    {"--menu-bar", "", "HOST", "tray, strip or auto",
     "where the meters go: tray (a StatusNotifierItem tray on\n"
     "the session bus), strip (Corvane's own bar at the top of\n"
     "an X11 screen) or auto (default: the tray when one is\n"
     "running, else the strip on X11)",
     [](AgentOptions& options, const Flag& flag,
        std::string_view value) -> std::optional<ArgumentError> {
         const auto request = menuBarHostRequestFromName(value);
         if (!request) {
             return badValue(flag.name, value, "one of tray, strip, auto");
         }
         options.menuBarHost = *request;
         return std::nullopt;
     }},
    {"--update-check", "", "", "",
     "check the bundle's update feed once and print the outcome\n"
     "as one JSON line (version, offer, installed, error)",
     [](AgentOptions& options, const Flag& flag, std::string_view) {
         return setMode(options, flag, Mode::updateCheck);
     }},
    {"--update-install", "", "", "",
     "the same, and install what was found without asking, then\n"
     "start the agent from the new bundle",
     [](AgentOptions& options, const Flag& flag, std::string_view) {
         return setMode(options, flag, Mode::updateInstall);
     }},
    {"--help", "-h", "", "", "show this text",
     [](AgentOptions& options, const Flag&, std::string_view) -> std::optional<ArgumentError> {
         options.mode = Mode::help;
         return std::nullopt;
     }},
};

const Flag* findFlag(std::string_view argument) {
    for (const Flag& flag : flags) {
        if (flag.isSpelled(argument)) {
            return &flag;
        }
    }
    return nullptr;
}

class ArgumentReader {
public:
    explicit ArgumentReader(std::span<const std::string_view> arguments) : arguments(arguments) {}

    bool atEnd() const { return position >= arguments.size(); }

    /// The next flag's name; its inline value (after '=') is kept for `value`.
    std::string_view nextFlag() {
        std::string_view argument = arguments[position++];
        inlineValue.reset();
        if (argument.starts_with("--")) {
            if (auto equals = argument.find('='); equals != std::string_view::npos) {
                inlineValue = argument.substr(equals + 1);
                return argument.substr(0, equals);
            }
        }
        return argument;
    }

    bool hasInlineValue() const { return inlineValue.has_value(); }

    std::optional<std::string_view> value() {
        if (inlineValue) {
            return std::exchange(inlineValue, std::nullopt);
        }
        if (atEnd()) {
            return std::nullopt;
        }
        return arguments[position++];
    }

private:
    std::span<const std::string_view> arguments;
    std::size_t position = 0;
    std::optional<std::string_view> inlineValue;
};

}  // namespace

std::variant<AgentOptions, ArgumentError> parseAgentArguments(
    std::span<const std::string_view> arguments) {
    AgentOptions options;
    // Every value is a name, a number or a path the messages show; paths in another encoding
    // are refused as well, as nothing of ours would show them readably.
    if (const auto argument = firstArgumentNotUTF8(arguments)) {
        return ArgumentError{quotedArgument(*argument) + " is not valid UTF-8"};
    }
    ArgumentReader reader(arguments);
    while (!reader.atEnd()) {
        const std::string_view argument = reader.nextFlag();
        const Flag* flag = findFlag(argument);
        if (reader.hasInlineValue() && !(flag && flag->takesValue())) {
            return ArgumentError{quotedArgument(argument) + " takes no value"};
        }
        if (!flag) {
            return ArgumentError{"unknown option " + quotedArgument(argument) + " (see --help)"};
        }
        std::string_view value;
        if (flag->takesValue()) {
            const auto given = reader.value();
            if (!given) {
                return flag->missingValue();
            }
            value = *given;
        }
        if (auto error = flag->apply(options, *flag, value)) {
            return *error;
        }
        // Asking for help ends the command line: nothing after it is looked at.
        if (options.mode == Mode::help) {
            return options;
        }
    }

    const bool headless = options.mode == Mode::snapshot || options.mode == Mode::stream ||
                          options.mode == Mode::render;
    if (!headless && (options.refreshes || options.interval)) {
        return ArgumentError{"--refreshes and --interval need --snapshot, --stream or --render"};
    }
    return options;
}

bool runsTheMenuBar(const std::vector<std::string>& arguments) {
    const std::vector<std::string_view> words(arguments.begin(), arguments.end());
    const auto parsed = parseAgentArguments(words);
    const auto* options = std::get_if<AgentOptions>(&parsed);
    return options != nullptr && options->mode == AgentOptions::Mode::menuBar;
}

std::string agentUsage() {
    std::string text = R"(Usage: corvane-agent [options]

Without --snapshot, --stream or --render, runs the menu-bar agent.

Options:
)";
    for (const Flag& flag : flags) {
        std::string synopsis;
        if (!flag.shortName.empty()) {
            synopsis.append(flag.shortName).append(", ");
        }
        synopsis.append(flag.name);
        if (flag.takesValue()) {
            synopsis.append(" ").append(flag.valueName);
        }
        appendUsageEntry(text, synopsis, flag.help);
    }
    text += R"(
Settings: $XDG_CONFIG_HOME/corvane/<suite>.json (default ~/.config/corvane); the
suite is the application group, or $CORVANE_SETTINGS_SUITE when set.
The agent logs to the systemd journal (journalctl -t corvane-agent), or to
standard error when there is no journal or $CORVANE_LOG is "stderr".
)";
    return text;
}

}  // namespace corvane
