#include <QCoreApplication>

#include <iostream>
#include <string_view>
#include <variant>
#include <vector>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/UI/HeadlessSession.h"

int main(int argc, char** argv) {
    using corvane::AgentOptions;
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    auto parsed = corvane::parseAgentArguments(arguments);
    if (const auto* error = std::get_if<corvane::ArgumentError>(&parsed)) {
        std::cerr << "corvane-agent: " << error->message << '\n';
        return 2;
    }
    const auto& options = std::get<AgentOptions>(parsed);
    switch (options.mode) {
        case AgentOptions::Mode::help: std::cout << corvane::agentUsage(); return 0;
        case AgentOptions::Mode::menuBar:
            std::cerr << "corvane-agent: the menu bar is not available yet; "
                         "use --snapshot or --stream (see --help)\n";
            return 1;
        case AgentOptions::Mode::snapshot:
        case AgentOptions::Mode::stream: break;
    }
    QCoreApplication application(argc, argv);
    return corvane::runHeadless(options);
}
