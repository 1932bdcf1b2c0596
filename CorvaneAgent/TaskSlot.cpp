#include "CorvaneAgent/TaskSlot.h"

#include <utility>

namespace corvane {

void TaskSlot::finish() {
    running = false;
    // A waiter may start the next task of this kind and queue new waiters for it; those must
    // wait for that task, not be resumed now.
    auto resumed = std::exchange(waiters, {});
    for (auto& waiter : resumed) {
        waiter();
    }
}

void TaskSlot::whenFinished(std::function<void()> continuation) {
    if (running) {
        waiters.push_back(std::move(continuation));
    } else {
        continuation();
    }
}

}  // namespace corvane
