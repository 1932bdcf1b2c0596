#include "tools/corvanectl/CtlAutostart.h"

namespace corvane {

int runAutostartCommand(const CtlCommand& command, const AutostartPlace& place, std::ostream& out,
                        std::ostream& errors) {
    using Action = CtlCommand::AutostartAction;
    if (command.autostart == Action::status) {
        if (!place.entryFile) {
            errors << "corvanectl: no configuration folder: set HOME or XDG_CONFIG_HOME\n";
            return 1;
        }
        const AutostartEntry::Status status = LoginItem::status(place);
        switch (status.state) {
            case AutostartEntry::State::on: out << "on\n"; break;
            case AutostartEntry::State::off: out << "off\n"; break;
            case AutostartEntry::State::elsewhere:
                out << "elsewhere " << status.program << '\n';
                break;
        }
        return 0;
    }
    const auto problem = LoginItem::set(command.autostart == Action::on, place);
    if (problem) {
        errors << "corvanectl: " << *problem << '\n';
        return 1;
    }
    return 0;
}

}  // namespace corvane
