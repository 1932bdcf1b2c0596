#include "CorvaneAgent/Headless/AgentStart.h"

#include <iostream>
#include <string_view>
#include <utility>
#include <vector>

#include "CorvaneShared/BundleDirectory.h"
#include "Platform/Linux/ExecutablePath.h"

namespace corvane {

namespace {

std::optional<std::filesystem::path> ownBundle() {
    const auto executable = currentExecutablePath();
    return executable ? BundleDirectory::bundleOfExecutable(*executable) : std::nullopt;
}

}  // namespace

std::variant<AgentOptions, int> readAgentCommandLine(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    auto parsed = parseAgentArguments(arguments);
    if (const auto* error = std::get_if<ArgumentError>(&parsed)) {
        std::cerr << "corvane-agent: " << error->message << '\n';
        return 2;
    }
    auto& options = std::get<AgentOptions>(parsed);
    if (options.mode == AgentOptions::Mode::help) {
        std::cout << agentUsage();
        return 0;
    }
    return std::move(options);
}

AgentLanguage::AgentLanguage()
    : bundle(ownBundle()),
      translations(BundleDirectory::translationFiles(bundle)),
      language(processLanguageSources(bundle, translations.lookup())) {
    language.recordLaunchCode();
    language.applyChoiceToProcessDefaults();
}

}  // namespace corvane
