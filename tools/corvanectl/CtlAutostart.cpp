#include "tools/corvanectl/CtlAutostart.h"

#include "CorvaneShared/AutostartEntry.h"

namespace corvane {

namespace {

int refuse(std::ostream& errors, const std::string& message) {
    errors << "corvanectl: " << message << '\n';
    return 1;
}

}  // namespace

int runAutostartCommand(const CtlCommand& command, const AutostartPlace& place, std::ostream& out,
                        std::ostream& errors) {
    using Action = CtlCommand::AutostartAction;
    if (!place.entryFile) {
        return refuse(errors, "no configuration folder: set HOME or XDG_CONFIG_HOME");
    }
    if (command.autostart == Action::status) {
        // Without a found agent nothing on disk can be this agent's entry.
        const AutostartEntry::Status status =
            AutostartEntry::status(*place.entryFile, place.agent.value_or(""));
        switch (status.state) {
            case AutostartEntry::State::on: out << "on\n"; break;
            case AutostartEntry::State::off: out << "off\n"; break;
            case AutostartEntry::State::elsewhere:
                out << "elsewhere " << status.program << '\n';
                break;
        }
        return 0;
    }
    if (LoginItemPolicy::isSuppressed(place.environment, place.arguments)) {
        return refuse(errors, std::string("login item left alone: ") +
                                  LoginItemPolicy::suppressVariable +
                                  " is set or this is a test run");
    }
    if (command.autostart == Action::off) {
        const auto problem = AutostartEntry::remove(*place.entryFile);
        return problem ? refuse(errors, *problem) : 0;
    }
    if (!place.agent) {
        return refuse(errors, "no corvane-agent found to start at login");
    }
    if (LoginItemPolicy::isTranslocated(*place.agent, place.places)) {
        return refuse(errors, place.agent->string() +
                                  " runs from a temporary or read-only place; move Corvane to "
                                  "a lasting folder first");
    }
    const auto problem = AutostartEntry::install(*place.entryFile, *place.agent);
    return problem ? refuse(errors, *problem) : 0;
}

}  // namespace corvane
