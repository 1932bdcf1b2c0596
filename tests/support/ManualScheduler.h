#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <vector>

#include "Platform/Runtime.h"

namespace corvane::testing {

/// Time and scheduling that only move when a test says so: the clock stands still until
/// `advance`, timers fire inside `advance`, background tasks and main-queue work run when
/// drained. Everything runs on the test's thread, in a deterministic order.
class ManualScheduler final : public Clock,
                              public TimerFactory,
                              public MainQueue,
                              public TaskRunner {
public:
    ManualScheduler();

    Runtime runtime() { return {*this, *this, *this, *this}; }

    TimePoint now() const override { return current; }
    std::unique_ptr<Timer> startRepeating(double intervalSeconds, double toleranceSeconds,
                                          std::function<void()> action) override;
    void post(std::function<void()> work) override { mainQueue.push_back(std::move(work)); }
    void run(std::function<void()> work) override { background.push_back(std::move(work)); }

    /// Moves the clock forward, firing each due timer at its own time, in time order.
    void advance(double seconds);
    /// Runs the background tasks queued so far; returns how many ran.
    std::size_t runBackgroundTasks();
    /// Runs main-queue work until the queue is empty; returns how many ran.
    std::size_t drainMainQueue();
    /// Runs background tasks and main-queue work until neither has anything left.
    void settle();

    struct TimerInfo {
        double interval;
        double tolerance;
    };
    /// The timers that are still valid, oldest first.
    std::vector<TimerInfo> activeTimers() const;
    /// How many timers were ever started.
    std::size_t timersStarted() const { return started; }
    std::size_t pendingBackgroundTasks() const { return background.size(); }

private:
    struct TimerState {
        double interval;
        double tolerance;
        TimePoint nextFire;
        std::function<void()> action;
        bool valid = true;
    };
    class ManualTimer;

    TimePoint current;
    std::size_t started = 0;
    std::vector<std::shared_ptr<TimerState>> timers;
    std::deque<std::function<void()>> mainQueue;
    std::deque<std::function<void()>> background;
};

}  // namespace corvane::testing
