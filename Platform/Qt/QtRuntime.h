#pragma once

#include <QObject>
#include <QThreadPool>

#include "Platform/Runtime.h"

namespace corvane {

/// The runtime of the program: Qt's event loop runs the main queue and the timers, a thread
/// pool runs background tasks. Create and destroy it on the main thread, inside a running
/// QCoreApplication's lifetime; destruction waits for the background tasks still running.
class QtRuntime final : public Clock, public TimerFactory, public MainQueue, public TaskRunner {
public:
    QtRuntime();
    ~QtRuntime() override;

    Runtime runtime() { return {*this, *this, *this, *this}; }

    TimePoint now() const override;
    std::unique_ptr<Timer> startRepeating(double intervalSeconds, double toleranceSeconds,
                                          std::function<void()> action) override;
    void post(std::function<void()> work) override;
    void run(std::function<void()> work) override;

private:
    // Declared before the pool so that it is destroyed after it: tasks still finishing may post.
    QObject mainThreadContext;
    QThreadPool pool;
};

}  // namespace corvane
