#pragma once

#include <ostream>

#include "CorvaneShared/LoginItem.h"
#include "tools/corvanectl/CtlCommand.h"

namespace corvane {

/// Runs autostart on|off|status. `on` and `off` refuse while the policy suppresses the login
/// item; `on` also when the agent is missing or translocated. Prints the status to `out`, a
/// one-line message to `errors`; answers the exit status (1 for a refusal or failure).
int runAutostartCommand(const CtlCommand& command, const AutostartPlace& place, std::ostream& out,
                        std::ostream& errors);

}  // namespace corvane
