#pragma once

namespace corvane {

struct AgentOptions;

/// Runs the monitor without a menu bar and prints its readings as JSON on standard output:
/// one object after the last refresh of a snapshot, one line per refresh of a stream.
/// Needs a QCoreApplication; returns the process's exit status.
int runHeadless(const AgentOptions& options);

}  // namespace corvane
