#pragma once

#include <functional>
#include <memory>

#include "Platform/DisplayState.h"
#include "Platform/Runtime.h"

namespace corvane {

class AppLanguage;
class SettingsStore;
class SystemMonitor;
struct AgentOptions;

/// The event loop a headless run turns on: the front program's poll loop, or Qt's in the program
/// that draws (`--render`, or the Qt program started directly). Main thread only.
class HeadlessLoop {
public:
    virtual ~HeadlessLoop() = default;
    /// The clock, timers, main queue and background runner the monitor runs on.
    virtual Runtime runtime() = 0;
    /// Runs until `quit`; returns the status given to it.
    virtual int exec() = 0;
    /// Ends `exec` with `status`. From the loop.
    virtual void quit(int status) = 0;
    /// Calls `onSignal` from the loop on SIGTERM, SIGINT and SIGHUP for as long as the loop
    /// lives, instead of letting them end the process mid-line.
    virtual void handleTerminationSignals(std::function<void(int signal)> onSignal) = 0;
    /// What tells a stream that nobody can see its readings (screens asleep, session switched
    /// away), so that it rests like the agent does.
    virtual std::unique_ptr<DisplayStateSource> makeDisplayState() = 0;
};

/// What a one-off run does with the model once its refreshes and the background work they
/// started are done; returns the process's exit status.
using SampledModelConsumer = std::function<int(SystemMonitor& model, SettingsStore& settings)>;

/// Runs the monitor without a menu bar and prints its readings as JSON on standard output:
/// one object after the last refresh of a snapshot, one line per refresh of a stream. A
/// one-off run (snapshot or render) given `consumer` hands it the model instead of printing.
/// Texts are in `language`. A stream ended by SIGTERM, SIGINT or SIGHUP finishes its line and
/// ends with status 0 (it runs until interrupted); a snapshot so ended prints nothing and ends
/// with 128 + the signal's number, as the shell reports a program the signal killed. Returns the
/// process's exit status.
int runHeadless(HeadlessLoop& loop, const AgentOptions& options, const AppLanguage& language,
                SampledModelConsumer consumer = nullptr);

}  // namespace corvane
