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
#include <utility>
#include <variant>
#include <vector>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/Headless/AgentStart.h"
#include "CorvaneAgent/Headless/DesktopProgram.h"
#include "CorvaneAgent/Headless/HeadlessSession.h"
#include "Platform/DisplayState.h"
#include "Platform/Linux/ExecutablePath.h"
#include "Platform/Linux/PollLoop.h"
#include "Platform/Linux/WatchedDisplayState.h"

namespace corvane {
namespace {

namespace fs = std::filesystem;

// The headless session on the front's own loop.
class FrontLoop final : public HeadlessLoop {
public:
    Runtime runtime() override { return loop.runtime(); }
    int exec() override { return loop.exec(); }
    void quit(int status) override { loop.quit(status); }
    void handleTerminationSignals(std::function<void(int)> onSignal) override {
        loop.handleTerminationSignals(std::move(onSignal));
    }
    std::unique_ptr<DisplayStateSource> makeDisplayState() override {
        return std::make_unique<WatchedDisplayState>(
            std::make_unique<SessionDisplayState>(),
            [this](int fd, std::function<void()> onReadable) {
                return loop.watch(fd, std::move(onReadable));
            },
            loop);
    }

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
    auto read = corvane::readAgentCommandLine(argc, argv);
    if (const int* status = std::get_if<int>(&read)) {
        return *status;
    }
    const auto& options = std::get<AgentOptions>(read);
    switch (options.mode) {
        case AgentOptions::Mode::help:  // Answered by readAgentCommandLine.
        case AgentOptions::Mode::snapshot:
        case AgentOptions::Mode::stream: break;
        case AgentOptions::Mode::menuBar:
        case AgentOptions::Mode::updateCheck:
        case AgentOptions::Mode::updateInstall:
        case AgentOptions::Mode::render:
            return corvane::runDesktopProgram(argv, corvane::currentExecutablePath());
    }
    corvane::AgentLanguage start;
    corvane::FrontLoop loop;
    return corvane::runHeadless(loop, options, start.language);
}
