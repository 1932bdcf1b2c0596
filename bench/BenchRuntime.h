#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "Platform/Runtime.h"

namespace corvane {

/// Drives refresh() by hand: the clock is real, timers and queues are never used because the
/// benchmark calls refresh() itself and attaches no background source.
class BenchRuntime final : public Clock, public TimerFactory, public MainQueue, public TaskRunner {
public:
    Runtime runtime() { return {*this, *this, *this, *this}; }
    TimePoint now() const override { return std::chrono::steady_clock::now(); }
    std::unique_ptr<Timer> startRepeating(double, double, std::function<void()>) override {
        return nullptr;
    }
    void post(std::function<void()>) override {}
    void run(std::function<void()>) override {}
};

}  // namespace corvane
