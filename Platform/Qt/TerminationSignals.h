#pragma once

#include <QDBusConnection>

#include <chrono>
#include <functional>
#include <memory>

namespace corvane {

/// Turns SIGTERM, SIGINT and SIGHUP into a call on the main thread, from the event loop, so the
/// program ends the way it does on any other request (no settings write is cut short in the
/// middle). The handler writes one byte to a pipe, the only safe thing it can do. One at a
/// time per process; destroying it restores the default dispositions. Create and destroy on
/// the main thread inside a QCoreApplication's lifetime.
class TerminationSignals {
public:
    /// `onSignal` gets the signal's number.
    explicit TerminationSignals(std::function<void(int signal)> onSignal);
    ~TerminationSignals();

    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

private:
    class Pipe;
    std::unique_ptr<Pipe> pipe;
};

/// Calls `onLoss` once, from the event loop, when `connection` (connected when this is made)
/// is no longer connected: the session's bus daemon ended with the desktop session. Checked
/// every `period`, since Qt reports a lost connection to nobody. Nothing happens for a
/// connection that was not connected to begin with. Main thread.
class BusLossWatch {
public:
    BusLossWatch(QDBusConnection connection, std::chrono::milliseconds period,
                 std::function<void()> onLoss);
    ~BusLossWatch();

    BusLossWatch(const BusLossWatch&) = delete;
    BusLossWatch& operator=(const BusLossWatch&) = delete;

private:
    class Poll;
    std::unique_ptr<Poll> poll;
};

}  // namespace corvane
