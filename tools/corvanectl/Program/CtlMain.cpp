#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <variant>
#include <vector>

#include "CorvaneShared/BuildInfo.h"
#include "CorvaneShared/LoginItem.h"
#include "CorvaneShared/SharedSettings.h"
#include "CorvaneShared/SignalListener.h"
#include "Platform/Linux/ExecutablePath.h"
#include "Platform/Qt/QtDBusSignalBus.h"
#include "tools/corvanectl/CtlAutostart.h"
#include "tools/corvanectl/CtlCommand.h"
#include "tools/corvanectl/CtlSettings.h"

namespace {

using corvane::CtlCommand;
namespace SharedSettings = corvane::SharedSettings;

int fail(int status, std::string_view message) {
    std::cerr << "corvanectl: " << message << '\n';
    return status;
}

int runSettings(const CtlCommand& command) {
    const auto& directory = SharedSettings::settingsDirectory();
    if (!directory) {
        return fail(2, "no settings folder: set HOME or XDG_CONFIG_HOME");
    }
    if (auto problem = corvane::settingsFileProblem(
            SharedSettings::storeFile(SharedSettings::suiteName(), *directory))) {
        return fail(2, *problem);
    }
    corvane::SettingsStore& store = SharedSettings::store();
    store.registerDefaults(SharedSettings::factoryDefaults());
    return corvane::runSettingsCommand(command, store, std::cout, std::cerr);
}

int runAutostart(const CtlCommand& command) {
    // corvanectl ships with the agent, so the agent to start is the one of this copy: in the
    // portable bundle the agent bundle inside it, installed or built the program beside it.
    // The path is the resolved executable, so a link to corvanectl finds the real copy.
    const std::vector<std::string> noArguments;
    return corvane::runAutostartCommand(
        command, corvane::LoginItem::processPlace(corvane::currentExecutablePath(), noArguments),
        std::cout, std::cerr);
}

int runSignals(const CtlCommand& command, int argc, char** argv) {
    QCoreApplication application(argc, argv);
    corvane::QtDBusSignalBus bus;
    // The library drops posts and refuses listeners silently without a bus; a person at a
    // terminal is better told.
    if (!bus.isConnected()) {
        return fail(1, "no D-Bus session bus (is DBUS_SESSION_BUS_ADDRESS set?)");
    }
    if (command.verb == CtlCommand::Verb::post) {
        SharedSettings::post(bus, command.signalCases.front());
        // The process ends next; the post must have left it by then.
        bus.flush();
        return 0;
    }
    corvane::SignalListener listener(bus);
    for (SharedSettings::Signal signal : command.signalCases) {
        listener.listen(signal, [signal] {
            const std::string_view name = SharedSettings::signalCaseName(signal);
            std::fwrite(name.data(), 1, name.size(), stdout);
            std::fputc('\n', stdout);
            // Flushed per line, so a reader on a pipe sees each signal as it arrives.
            std::fflush(stdout);
        });
    }
    if (listener.registrationCount() != command.signalCases.size()) {
        return fail(1, "the session bus refused to deliver signals");
    }
    return QCoreApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string_view> arguments(argv + 1, argv + argc);
    auto parsed = corvane::parseCtlArguments(arguments);
    if (const auto* error = std::get_if<corvane::CtlUsageError>(&parsed)) {
        return fail(2, error->message);
    }
    const auto& command = std::get<CtlCommand>(parsed);
    switch (command.verb) {
        case CtlCommand::Verb::help: std::cout << corvane::ctlUsage(); return 0;
        case CtlCommand::Verb::post:
        case CtlCommand::Verb::watch: return runSignals(command, argc, argv);
        case CtlCommand::Verb::get:
        case CtlCommand::Verb::set:
        case CtlCommand::Verb::remove:
        case CtlCommand::Verb::list: return runSettings(command);
        case CtlCommand::Verb::autostart: return runAutostart(command);
    }
    return 2;
}
