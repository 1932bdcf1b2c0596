#pragma once

#include <functional>

namespace corvane {

class AppLanguage;
class SettingsStore;
class SystemMonitor;
struct AgentOptions;

/// What a one-off run does with the model once its refreshes and the background work they
/// started are done; returns the process's exit status.
using SampledModelConsumer = std::function<int(SystemMonitor& model, SettingsStore& settings)>;

/// Runs the monitor without a menu bar and prints its readings as JSON on standard output:
/// one object after the last refresh of a snapshot, one line per refresh of a stream. A
/// one-off run (snapshot or render) given `consumer` hands it the model instead of printing.
/// Texts are in `language`. Needs a QCoreApplication; returns the process's exit status.
int runHeadless(const AgentOptions& options, const AppLanguage& language,
                SampledModelConsumer consumer = nullptr);

}  // namespace corvane
