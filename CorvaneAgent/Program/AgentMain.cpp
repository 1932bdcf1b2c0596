#include <QCoreApplication>

#include <cstdlib>
#include <utility>
#include <variant>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/Headless/AgentStart.h"
#include "CorvaneAgent/Program/AgentSession.h"
#include "CorvaneAgent/Program/QtHeadlessLoop.h"
#include "CorvaneAgent/Program/RenderSession.h"
#include "CorvaneAgent/Program/UpdateCheckSession.h"
#include "CorvaneShared/AppLanguage.h"

int main(int argc, char** argv) {
    using corvane::AgentOptions;
    // When the session bus goes away in the middle of one of Qt's blocking calls (the session
    // ends while the agent starts), Qt 6 hands libdbus a call that was never sent, and libdbus
    // aborts the process on such a misuse unless told to only warn. The call then fails like
    // any other on a lost bus, and the agent ends as it does when the session ends.
    ::setenv("DBUS_FATAL_WARNINGS", "0", 0);
    auto read = corvane::readAgentCommandLine(argc, argv);
    if (const int* status = std::get_if<int>(&read)) {
        return *status;
    }
    const auto& options = std::get<AgentOptions>(read);
    // Before the application object exists, since Qt reads the process's languages then.
    corvane::AgentLanguage start;
    corvane::AppLanguage& language = start.language;

    if (options.mode == AgentOptions::Mode::menuBar) {
        return corvane::runAgent(argc, argv, options, language, start.bundle);
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
