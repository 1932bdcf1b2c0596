#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace corvane {

using TimePoint = std::chrono::steady_clock::time_point;

/// Monotonic time. Any thread.
class Clock {
public:
    virtual ~Clock() = default;
    virtual TimePoint now() const = 0;
};

/// A repeating timer; destroying it invalidates it, and its action never runs afterwards.
class Timer {
public:
    virtual ~Timer() = default;
    /// Seconds between firings, as requested.
    virtual double interval() const = 0;
};

/// Creates repeating timers that fire on the main thread.
class TimerFactory {
public:
    virtual ~TimerFactory() = default;
    /// Starts a timer that runs `action` every `intervalSeconds`; the system may delay a firing by
    /// up to `toleranceSeconds` to coalesce wake-ups. Main thread only.
    virtual std::unique_ptr<Timer> startRepeating(double intervalSeconds, double toleranceSeconds,
                                                  std::function<void()> action) = 0;
};

/// Runs work on the main thread, in posting order. `post` may be called from any thread.
class MainQueue {
public:
    virtual ~MainQueue() = default;
    virtual void post(std::function<void()> work) = 0;
};

/// Runs work off the main thread. The work must touch no main-thread state; it hands results
/// back through `MainQueue::post`. `run` is called on the main thread.
class TaskRunner {
public:
    virtual ~TaskRunner() = default;
    virtual void run(std::function<void()> work) = 0;
};

/// The time and scheduling services the logic runs on: Qt's in the program, a manual
/// scheduler in tests. The referenced services outlive everything that holds a Runtime.
struct Runtime {
    const Clock& clock;
    TimerFactory& timers;
    MainQueue& mainQueue;
    TaskRunner& tasks;
};

}  // namespace corvane
