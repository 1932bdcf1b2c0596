#pragma once

namespace corvane {

class AppLanguage;
struct AgentOptions;

/// Runs the monitor without a menu bar and prints its readings as JSON on standard output:
/// one object after the last refresh of a snapshot, one line per refresh of a stream.
/// Texts are in `language`. Needs a QCoreApplication; returns the process's exit status.
int runHeadless(const AgentOptions& options, const AppLanguage& language);

}  // namespace corvane
