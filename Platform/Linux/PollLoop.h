#pragma once

#include <pthread.h>
#include <signal.h>

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include "Foundation/Subscription.h"
#include "Platform/Runtime.h"

namespace corvane {

/// A single-threaded event loop for the programs that need no toolkit: one `ppoll` waits for the
/// next timer, for watched descriptors and for work posted from other threads. Background work
/// (`run`) is queued behind the work already posted and runs on the loop's thread too, so a
/// headless run starts no thread and wakes once per timer firing. Create, use and destroy it on
/// one thread (the main thread); only `post` may be called from any thread.
class PollLoop final : public Clock, public TimerFactory, public MainQueue, public TaskRunner {
public:
    PollLoop();
    ~PollLoop() override;

    PollLoop(const PollLoop&) = delete;
    PollLoop& operator=(const PollLoop&) = delete;

    Runtime runtime() { return {*this, *this, *this, *this}; }

    TimePoint now() const override;
    /// A timer fires at most once per wake-up and never catches up on firings the loop missed
    /// while busy: the next one is due an interval after the late one. The tolerance is not
    /// used (the kernel's timer slack already coalesces wake-ups of an idle process).
    std::unique_ptr<Timer> startRepeating(double intervalSeconds, double toleranceSeconds,
                                          std::function<void()> action) override;
    /// Any thread; from another thread it wakes the loop.
    void post(std::function<void()> work) override;
    /// Queues `work` behind everything posted so far; it runs on the loop's thread.
    void run(std::function<void()> work) override;

    /// Calls `onReadable` from the loop whenever `fd` is readable (or hung up or in error, so
    /// the owner notices a closed connection), until the subscription ends. The descriptor
    /// stays the caller's; end the subscription before closing it.
    Subscription watch(int fd, std::function<void()> onReadable);

    /// Turns SIGTERM, SIGINT and SIGHUP into a call of `onSignal` (with the signal's number)
    /// from the loop, through a signalfd: the signals are blocked in the calling thread, so call
    /// this before any other thread starts. Called again, it replaces the handler. Destroying
    /// the loop gives the thread its previous signal mask back.
    void handleTerminationSignals(std::function<void(int signal)> onSignal);

    /// Runs until `quit`; returns the status given to it. Work already queued when `quit` is
    /// called stays queued for a later `exec`.
    int exec();
    /// Ends `exec` after the piece of work running now. Loop thread.
    void quit(int status = 0);

private:
    struct TimerState;
    struct Watch;
    class LoopTimer;

    bool runOneQueued();
    bool fireOneDueTimer();
    void waitAndDispatch();
    void wake();

    std::mutex queueMutex;
    std::deque<std::function<void()>> queue;
    pthread_t loopThread;
    int wakeFd = -1;

    std::vector<std::shared_ptr<TimerState>> timers;
    std::vector<std::shared_ptr<Watch>> watches;

    int signalFd = -1;
    sigset_t previousMask{};
    std::function<void(int)> onSignal;

    bool quitting = false;
    int quitStatus = 0;
};

}  // namespace corvane
