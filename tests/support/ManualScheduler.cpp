#include "tests/support/ManualScheduler.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace corvane::testing {

namespace {

std::chrono::steady_clock::duration toDuration(double seconds) {
    return std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(seconds));
}

}  // namespace

class ManualScheduler::ManualTimer final : public Timer {
public:
    explicit ManualTimer(std::shared_ptr<TimerState> state) : state(std::move(state)) {}
    ~ManualTimer() override { state->valid = false; }
    double interval() const override { return state->interval; }

private:
    std::shared_ptr<TimerState> state;
};

// Start far from the clock's epoch so that "long ago" arithmetic in the code under test is real.
ManualScheduler::ManualScheduler() : current(TimePoint{} + std::chrono::hours(24 * 365)) {}

std::unique_ptr<Timer> ManualScheduler::startRepeating(double intervalSeconds,
                                                       double toleranceSeconds,
                                                       std::function<void()> action) {
    auto state = std::make_shared<TimerState>(TimerState{intervalSeconds, toleranceSeconds,
                                                         current + toDuration(intervalSeconds),
                                                         std::move(action)});
    timers.push_back(state);
    ++started;
    return std::make_unique<ManualTimer>(state);
}

void ManualScheduler::advance(double seconds) {
    const TimePoint target = current + toDuration(seconds);
    for (;;) {
        std::erase_if(timers, [](const auto& timer) { return !timer->valid; });
        auto due = std::min_element(timers.begin(), timers.end(), [](const auto& a, const auto& b) {
            return a->nextFire < b->nextFire;
        });
        if (due == timers.end() || (*due)->nextFire > target) {
            break;
        }
        // Keep the timer alive while its action runs: the action may invalidate it.
        std::shared_ptr<TimerState> timer = *due;
        current = timer->nextFire;
        timer->nextFire += toDuration(timer->interval);
        timer->action();
    }
    current = target;
}

std::size_t ManualScheduler::runBackgroundTasks() {
    auto tasks = std::exchange(background, {});
    for (auto& task : tasks) {
        task();
    }
    return tasks.size();
}

std::size_t ManualScheduler::drainMainQueue() {
    std::size_t count = 0;
    while (!mainQueue.empty()) {
        auto work = std::move(mainQueue.front());
        mainQueue.pop_front();
        work();
        ++count;
    }
    return count;
}

void ManualScheduler::settle() {
    while (runBackgroundTasks() + drainMainQueue() > 0) {
    }
}

std::vector<ManualScheduler::TimerInfo> ManualScheduler::activeTimers() const {
    std::vector<TimerInfo> active;
    for (const auto& timer : timers) {
        if (timer->valid) {
            active.push_back({timer->interval, timer->tolerance});
        }
    }
    return active;
}

}  // namespace corvane::testing
