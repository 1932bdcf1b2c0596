// bin/corvane-agent: the front of the agent. It links no toolkit, so `--stream` and `--snapshot`
// cost what the monitor costs and no more; every other mode replaces this process by the desktop
// program (see DesktopProgram.h) with the same arguments.

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <functional>
#include <iostream>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/Headless/DesktopProgram.h"
#include "CorvaneAgent/Headless/HeadlessSession.h"
#include "CorvaneShared/AppLanguage.h"
#include "CorvaneShared/BundleDirectory.h"
#include "Platform/DisplayState.h"
#include "Platform/Linux/ExecutablePath.h"
#include "Platform/Linux/PollLoop.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

// ---- Where the front's translations come from --------------------------------------------------
// The one place the front gets its translation lookup. The toolkit-free reader of the compiled
// translation files is not part of the front yet; until it is, there is no lookup here, and a
// headless run whose texts need translating is handed to the desktop program (which reads them
// with Qt), so that no run prints English where the user chose another language. Once the
// reader exists, return its lookup here (`translation(language, key) -> optional<string>`, the
// English text being the fallback) and the hand-over stops by itself.
std::optional<AppLanguage::TranslationLookup> frontTranslations(const std::optional<fs::path>&) {
    return std::nullopt;
}
// -------------------------------------------------------------------------------------------------

// The headless session on the front's own loop.
class FrontLoop final : public HeadlessLoop {
public:
    Runtime runtime() override { return loop.runtime(); }
    int exec() override { return loop.exec(); }
    void quit(int status) override { loop.quit(status); }
    void handleTerminationSignals(std::function<void(int)> onSignal) override {
        loop.handleTerminationSignals(std::move(onSignal));
    }

    // ---- Where the front learns that the screens sleep ----------------------------------------
    // The one place the front's display state is made. A stream rests while nobody can see its
    // readings; the toolkit-free session-bus display state (descriptors the loop watches through
    // PollLoop::watch, and a non-blocking dispatch) is not part of the front yet, so until it is,
    // the front's stream never rests.
    std::unique_ptr<DisplayStateSource> makeDisplayState() override {
        return std::make_unique<NeverPausingDisplayState>();
    }
    // ---------------------------------------------------------------------------------------------

private:
    PollLoop loop;
};

// Replaces this process by the desktop program; returns only when that cannot be done.
int runDesktopProgram(char** argv, const std::optional<fs::path>& front) {
    const auto program = front ? desktopProgramOf(*front) : std::nullopt;
    if (!program) {
        std::cerr << "corvane-agent: the desktop program (" << desktopProgramFolder
                  << "/corvane-agent beside this program's folder) is missing or not executable\n";
        return 1;
    }
    ::execv(program->c_str(), argv);
    const int error = errno;
    std::cerr << "corvane-agent: cannot start " << program->string() << ": " << std::strerror(error)
              << '\n';
    return 1;
}

}  // namespace
}  // namespace corvane

int main(int argc, char** argv) {
    using corvane::AgentOptions;
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    auto parsed = corvane::parseAgentArguments(arguments);
    if (const auto* error = std::get_if<corvane::ArgumentError>(&parsed)) {
        std::cerr << "corvane-agent: " << error->message << '\n';
        return 2;
    }
    const auto& options = std::get<AgentOptions>(parsed);
    const auto executable = corvane::currentExecutablePath();
    switch (options.mode) {
        case AgentOptions::Mode::help: std::cout << corvane::agentUsage(); return 0;
        case AgentOptions::Mode::snapshot:
        case AgentOptions::Mode::stream: break;
        case AgentOptions::Mode::menuBar:
        case AgentOptions::Mode::updateCheck:
        case AgentOptions::Mode::updateInstall:
        case AgentOptions::Mode::render: return corvane::runDesktopProgram(argv, executable);
    }

    const auto bundle =
        executable ? corvane::BundleDirectory::bundleOfExecutable(*executable) : std::nullopt;
    auto translations = corvane::frontTranslations(bundle);
    corvane::AppLanguage language(corvane::processLanguageSources(
        bundle,
        translations ? std::move(*translations) : corvane::AppLanguage::TranslationLookup()));
    if (!translations) {
        const auto shipped = language.shipped();
        if (!shipped.empty() && language.code() != shipped.front()) {
            return corvane::runDesktopProgram(argv, executable);
        }
    }
    language.recordLaunchCode();
    language.applyChoiceToProcessDefaults();

    corvane::FrontLoop loop;
    return corvane::runHeadless(loop, options, language);
}
