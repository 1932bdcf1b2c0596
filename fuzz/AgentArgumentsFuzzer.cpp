// corvane-agent's command line. The input's NUL bytes separate the arguments.

#include <cmath>
#include <string>
#include <variant>

#include "CorvaneAgent/AgentOptions.h"
#include "fuzz/FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace corvane;
    using fuzz::require;
    const auto arguments = fuzz::argumentsOf(fuzz::textOf(data, size));
    const auto parsed = parseAgentArguments(arguments);
    const std::vector<std::string> copies(arguments.begin(), arguments.end());
    const bool menuBar = runsTheMenuBar(copies);
    if (const auto* error = std::get_if<ArgumentError>(&parsed)) {
        require(!error->message.empty(), "agent arguments: an empty error");
        require(error->message.find('\n') == std::string::npos,
                "agent arguments: an error of more than one line");
        require(!menuBar, "agent arguments: a refused command line runs the menu bar");
        return 0;
    }
    const auto& options = std::get<AgentOptions>(parsed);
    require(!options.refreshes || (*options.refreshes >= 1 && *options.refreshes <= 1'000'000),
            "agent arguments: refreshes outside 1...1000000");
    require(!options.interval || (std::isfinite(*options.interval) && *options.interval >= 0.01 &&
                                  *options.interval <= 3600),
            "agent arguments: interval outside 0.01...3600 s");
    require(menuBar == (options.mode == AgentOptions::Mode::menuBar),
            "agent arguments: runsTheMenuBar disagrees with the mode");
    require(!options.procfs.empty() && !options.sysfs.empty(), "agent arguments: an empty root");
    require(options.mode != AgentOptions::Mode::render || !options.renderDirectory.empty(),
            "agent arguments: render without a directory");
    return 0;
}
