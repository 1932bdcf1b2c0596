#include <QCoreApplication>

#include <cstdlib>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/Program/AgentSession.h"
#include "CorvaneAgent/Program/QtHeadlessLoop.h"
#include "CorvaneAgent/Program/RenderSession.h"
#include "CorvaneAgent/Program/UpdateCheckSession.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/BundleDirectory.h"
#include "Platform/Linux/CompiledTranslations.h"
#include "Platform/Linux/ExecutablePath.h"

int main(int argc, char** argv) {
    using corvane::AgentOptions;
    // When the session bus goes away in the middle of one of Qt's blocking calls (the session
    // ends while the agent starts), Qt 6 hands libdbus a call that was never sent, and libdbus
    // aborts the process on such a misuse unless told to only warn. The call then fails like
    // any other on a lost bus, and the agent ends as it does when the session ends.
    ::setenv("DBUS_FATAL_WARNINGS", "0", 0);
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
        case AgentOptions::Mode::snapshot:
        case AgentOptions::Mode::stream:
        case AgentOptions::Mode::updateCheck:
        case AgentOptions::Mode::updateInstall:
        case AgentOptions::Mode::render: break;
    }
    // Before the application object exists, since Qt reads the process's languages then.
    const auto executable = corvane::currentExecutablePath();
    const auto bundle =
        executable ? corvane::BundleDirectory::bundleOfExecutable(*executable) : std::nullopt;
    corvane::CompiledTranslations translations(corvane::BundleDirectory::translationFiles(bundle));
    corvane::AppLanguage language(corvane::processLanguageSources(bundle, translations.lookup()));
    language.recordLaunchCode();
    language.applyChoiceToProcessDefaults();

    if (options.mode == AgentOptions::Mode::menuBar) {
        return corvane::runAgent(argc, argv, options, language, bundle);
    }
    if (options.mode == AgentOptions::Mode::render) {
        return corvane::runRender(argc, argv, options, language);
    }
    QCoreApplication application(argc, argv);
    if (options.mode == AgentOptions::Mode::updateCheck ||
        options.mode == AgentOptions::Mode::updateInstall) {
        return corvane::runUpdateCheck(options.mode == AgentOptions::Mode::updateInstall);
    }
    corvane::QtHeadlessLoop loop;
    return corvane::runHeadless(loop, options, language);
}
