// What `--stream` would cost as a program that does not load Qt: the same monitor, the same
// sources and the same JSON lines, on a loop of its own (clock_nanosleep until the next timer,
// queued work run in order, background work queued behind the refresh as the stream does). It
// does not rest behind a locked screen (no D-Bus) and prints untranslated texts, so it is a
// measurement, not a mode of the agent: bench/stream-cpu.sh and bench/agent-memory.sh compare it
// with the agent to show what leaving Qt out would save.
//
// Usage: corvane-lean-stream [INTERVAL_SECONDS]

#include <time.h>

#include <chrono>
#include <cstdlib>
#include <deque>
#include <functional>
#include <list>
#include <memory>
#include <utility>

#include "CorvaneAgent/AgentOptions.h"
#include "CorvaneAgent/MonitorSnapshot.h"
#include "CorvaneAgent/Program/JSONLineWriter.h"
#include "CorvaneAgent/Program/MachineSources.h"
#include "CorvaneAgent/SystemMonitor.h"
#include "CorvaneShared/SharedSettings.h"
#include "Platform/Runtime.h"

namespace corvane {
namespace {

// A single-threaded runtime: every posted and "background" piece of work runs on the loop's
// thread, in order, so nothing needs waking from another thread.
class LoopRuntime final : public Clock, public TimerFactory, public MainQueue, public TaskRunner {
public:
    Runtime runtime() { return {*this, *this, *this, *this}; }

    TimePoint now() const override { return std::chrono::steady_clock::now(); }

    std::unique_ptr<Timer> startRepeating(double intervalSeconds, double,
                                          std::function<void()> action) override {
        auto state = std::make_shared<TimerState>();
        state->interval = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
            std::chrono::duration<double>(intervalSeconds));
        state->intervalSeconds = intervalSeconds;
        state->next = now() + state->interval;
        state->action = std::move(action);
        timers.push_back(state);
        return std::make_unique<LoopTimer>(std::move(state));
    }

    void post(std::function<void()> work) override { queue.push_back(std::move(work)); }
    void run(std::function<void()> work) override { queue.push_back(std::move(work)); }

    [[noreturn]] void loop() {
        for (;;) {
            while (!queue.empty()) {
                auto work = std::move(queue.front());
                queue.pop_front();
                work();
            }
            std::erase_if(timers, [](const auto& timer) { return timer->cancelled; });
            if (timers.empty()) {
                std::exit(0);
            }
            auto due = timers.front();
            for (const auto& timer : timers) {
                if (timer->next < due->next) {
                    due = timer;
                }
            }
            sleepUntil(due->next);
            due->next += due->interval;
            due->action();
        }
    }

private:
    struct TimerState {
        std::chrono::steady_clock::duration interval{};
        double intervalSeconds = 0;
        TimePoint next;
        std::function<void()> action;
        bool cancelled = false;
    };
    class LoopTimer final : public Timer {
    public:
        explicit LoopTimer(std::shared_ptr<TimerState> state) : state(std::move(state)) {}
        ~LoopTimer() override { state->cancelled = true; }
        double interval() const override { return state->intervalSeconds; }

    private:
        std::shared_ptr<TimerState> state;
    };

    static void sleepUntil(TimePoint when) {
        const auto sinceEpoch = when.time_since_epoch();
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(sinceEpoch);
        const timespec deadline{
            .tv_sec = static_cast<time_t>(seconds.count()),
            .tv_nsec = static_cast<long>(
                std::chrono::duration_cast<std::chrono::nanoseconds>(sinceEpoch - seconds).count()),
        };
        while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) != 0) {
        }
    }

    std::deque<std::function<void()>> queue;
    std::list<std::shared_ptr<TimerState>> timers;
};

}  // namespace
}  // namespace corvane

int main(int argc, char** argv) {
    using namespace corvane;
    AgentOptions options;
    options.mode = AgentOptions::Mode::stream;
    options.interval = argc > 1 ? std::atof(argv[1]) : 1.0;
    SettingsStore& settings = SharedSettings::store();
    settings.registerDefaults(SharedSettings::factoryDefaults());
    auto sensors = chooseSensorSource(options, std::getenv("CORVANE_SMC_TABLE"));
    if (std::holds_alternative<SourceError>(sensors)) {
        return 2;
    }
    LoopRuntime runtime;
    auto monitor = SystemMonitor::create(
        machineServices(options, settings, runtime.runtime(),
                        std::get<std::shared_ptr<SensorSource>>(std::move(sensors))));
    JSONLineWriter lines;
    SystemMonitor& model = *monitor;
    monitor->setOnRefresh([&] { lines.write(monitorSnapshot(model), -1); });
    monitor->start();
    runtime.loop();
}
