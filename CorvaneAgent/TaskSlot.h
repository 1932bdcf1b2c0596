#pragma once

#include <functional>
#include <vector>

namespace corvane {

/// One kind of background task, of which at most one runs at a time, with the continuations
/// waiting for it. Main thread only: the task's result is applied there before `finish`.
class TaskSlot {
public:
    bool isRunning() const { return running; }

    /// Marks a task of this kind as running.
    void begin() { running = true; }

    /// Marks the running task as done, then resumes its waiters in the order they came.
    void finish();

    /// Resumes `continuation` when the running task finishes, or at once when none runs.
    void whenFinished(std::function<void()> continuation);

private:
    bool running = false;
    std::vector<std::function<void()>> waiters;
};

}  // namespace corvane
