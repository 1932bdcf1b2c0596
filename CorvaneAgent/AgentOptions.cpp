#include "CorvaneAgent/AgentOptions.h"

#include <system_error>
#include <utility>

#include "Foundation/NumberParsing.h"

namespace corvane {

namespace {

constexpr double minimumInterval = 0.01;
constexpr double maximumInterval = 3600.0;
constexpr int maximumRefreshes = 1'000'000;

std::optional<ArgumentError> checkDirectory(std::string_view flag,
                                            const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_directory(path, error)) {
        return ArgumentError{std::string(flag) + ": '" + path.string() + "' is not a directory"};
    }
    return std::nullopt;
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

ArgumentError missingValue(std::string_view flag, std::string_view what) {
    return {std::string(flag) + " needs " + std::string(what)};
}

ArgumentError badValue(std::string_view flag, std::string_view value, std::string_view expected) {
    return {std::string(flag) + ": '" + std::string(value) + "' is not " + std::string(expected)};
}

}  // namespace

std::variant<AgentOptions, ArgumentError> parseAgentArguments(
    std::span<const std::string_view> arguments) {
    AgentOptions options;
    ArgumentReader reader(arguments);
    auto setMode = [&](AgentOptions::Mode mode,
                       std::string_view flag) -> std::optional<ArgumentError> {
        if (options.mode != AgentOptions::Mode::menuBar && options.mode != mode) {
            return ArgumentError{std::string(flag) + " cannot be combined with another mode"};
        }
        options.mode = mode;
        return std::nullopt;
    };

    while (!reader.atEnd()) {
        const std::string_view flag = reader.nextFlag();
        const bool takesValue = flag == "--refreshes" || flag == "--interval" || flag == "--open" ||
                                flag == "--procfs" || flag == "--sysfs" || flag == "--smc-table";
        if (reader.hasInlineValue() && !takesValue) {
            return ArgumentError{std::string(flag) + " takes no value"};
        }
        if (flag == "--help" || flag == "-h") {
            options.mode = AgentOptions::Mode::help;
            return options;
        }
        if (flag == "--update-check" || flag == "--update-install") {
            auto mode = flag == "--update-check" ? AgentOptions::Mode::updateCheck
                                                 : AgentOptions::Mode::updateInstall;
            if (auto error = setMode(mode, flag)) {
                return *error;
            }
            continue;
        }
        if (flag == "--snapshot" || flag == "--stream") {
            auto mode =
                flag == "--snapshot" ? AgentOptions::Mode::snapshot : AgentOptions::Mode::stream;
            if (auto error = setMode(mode, flag)) {
                return *error;
            }
            continue;
        }
        if (!takesValue) {
            return ArgumentError{"unknown option '" + std::string(flag) + "' (see --help)"};
        }
        const auto value = reader.value();
        if (flag == "--refreshes") {
            if (!value) {
                return missingValue(flag, "a count");
            }
            auto count = parseNumber<int>(*value);
            if (!count || *count < 1 || *count > maximumRefreshes) {
                return badValue(flag, *value, "a whole number from 1 to 1000000");
            }
            options.refreshes = count;
        } else if (flag == "--interval") {
            if (!value) {
                return missingValue(flag, "a number of seconds");
            }
            auto seconds = parseNumber<double>(*value);
            if (!seconds || *seconds < minimumInterval || *seconds > maximumInterval) {
                return badValue(flag, *value, "a number of seconds from 0.01 to 3600");
            }
            options.interval = seconds;
        } else if (flag == "--open") {
            if (!value) {
                return missingValue(flag, "a section");
            }
            auto section = sectionFromKey(*value);
            if (!section) {
                return badValue(flag, *value, "one of cpu, memory, storage, sensors");
            }
            options.openSections.push_back(*section);
        } else if (flag == "--smc-table") {
            if (!value || value->empty()) {
                return missingValue(flag, "a file");
            }
            options.smcTable = std::filesystem::path(*value);
        } else {
            if (!value || value->empty()) {
                return missingValue(flag, "a directory");
            }
            std::filesystem::path& root = flag == "--procfs" ? options.procfs : options.sysfs;
            root = std::filesystem::path(*value);
            if (auto error = checkDirectory(flag, root)) {
                return *error;
            }
        }
    }

    const bool headless =
        options.mode == AgentOptions::Mode::snapshot || options.mode == AgentOptions::Mode::stream;
    if (!headless && (options.refreshes || options.interval)) {
        return ArgumentError{"--refreshes and --interval need --snapshot or --stream"};
    }
    return options;
}

std::string agentUsage() {
    return R"(Usage: corvane-agent [options]

Without --snapshot or --stream, runs the menu-bar agent.

Options:
  --snapshot           take --refreshes samples, wait for the background work they
                       started, print one JSON object of every reading, and exit
  --stream             print one JSON line per refresh until interrupted
                       (or until --refreshes samples, when given)
  --refreshes N        how many refreshes (default for --snapshot: )" +
           std::to_string(defaultSnapshotRefreshes) + R"(, which
                       scans the processes twice, so CPU shares and disk rates
                       cover the time between the scans)
  --interval S         seconds between refreshes, 0.01 to 3600
                       (default: the "refreshInterval" setting, 1 second)
  --open SECTION       sample as if SECTION's panel were open: cpu, memory,
                       storage or sensors (repeatable)
  --procfs DIR         read /proc from DIR (default /proc)
  --sysfs DIR          read /sys from DIR (default /sys)
  --smc-table FILE     read temperatures, fans and power from a recorded
                       controller table (also $CORVANE_SMC_TABLE)
  --update-check       check the bundle's update feed once and print the outcome
                       as one JSON line (version, offer, installed, error)
  --update-install     the same, and install what was found without asking, then
                       start the agent from the new bundle
  -h, --help           show this text

Settings: $XDG_CONFIG_HOME/corvane/<suite>.json (default ~/.config/corvane); the
suite is the application group, or $CORVANE_SETTINGS_SUITE when set.
)";
}

}  // namespace corvane
