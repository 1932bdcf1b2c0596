#pragma once

#include <memory>
#include <string>
#include <variant>

#include "CorvaneAgent/SystemMonitor.h"

namespace corvane {

struct AgentOptions;

/// Why the machine's sources could not be set up, in one line.
struct SourceError {
    std::string message;
};

/// The sensor source of this run: the recorded controller table named by `--smc-table`, else by
/// `environmentTable` ($CORVANE_SMC_TABLE, null when unset), else the machine's controller when
/// it opens, else the hardware-monitoring chips when there is at least one, else none. A named
/// table that cannot be loaded is an error, not a silent fallback.
std::variant<std::shared_ptr<SensorSource>, SourceError> chooseSensorSource(
    const AgentOptions& options, const char* environmentTable);

/// Every source the monitor samples, read from the roots the options name.
MonitorServices machineServices(const AgentOptions& options, SettingsStore& settings,
                                Runtime runtime, std::shared_ptr<SensorSource> sensors);

}  // namespace corvane
