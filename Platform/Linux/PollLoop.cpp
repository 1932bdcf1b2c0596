#include "Platform/Linux/PollLoop.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace corvane {

namespace {

constexpr std::array<int, 3> endingSignals = {SIGTERM, SIGINT, SIGHUP};

using Nanoseconds = std::chrono::nanoseconds;

}  // namespace

struct PollLoop::TimerState {
    Nanoseconds interval{};
    double intervalSeconds = 0;
    TimePoint next;
    std::function<void()> action;
    bool cancelled = false;
};

struct PollLoop::Watch {
    int fd = -1;
    std::function<void()> onReadable;
    bool cancelled = false;
};

class PollLoop::LoopTimer final : public Timer {
public:
    explicit LoopTimer(std::shared_ptr<TimerState> state) : state(std::move(state)) {}
    ~LoopTimer() override { state->cancelled = true; }
    double interval() const override { return state->intervalSeconds; }

private:
    std::shared_ptr<TimerState> state;
};

PollLoop::PollLoop() : loopThread(::pthread_self()) {
    wakeFd = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
}

PollLoop::~PollLoop() {
    if (signalFd >= 0) {
        ::close(signalFd);
        ::pthread_sigmask(SIG_SETMASK, &previousMask, nullptr);
    }
    if (wakeFd >= 0) {
        ::close(wakeFd);
    }
}

TimePoint PollLoop::now() const {
    return std::chrono::steady_clock::now();
}

std::unique_ptr<Timer> PollLoop::startRepeating(double intervalSeconds, double,
                                                std::function<void()> action) {
    auto state = std::make_shared<TimerState>();
    // At least a millisecond, so a zero or negative interval cannot spin the loop; at most a
    // year, which keeps the arithmetic far from overflowing.
    const double seconds = std::clamp(std::isfinite(intervalSeconds) ? intervalSeconds : 1.0, 0.001,
                                      365.0 * 24 * 3600);
    state->interval =
        std::chrono::duration_cast<Nanoseconds>(std::chrono::duration<double>(seconds));
    state->intervalSeconds = intervalSeconds;
    state->next = now() + state->interval;
    state->action = std::move(action);
    timers.push_back(state);
    return std::make_unique<LoopTimer>(std::move(state));
}

void PollLoop::post(std::function<void()> work) {
    {
        const std::lock_guard lock(queueMutex);
        queue.push_back(std::move(work));
    }
    // The loop's own thread is not waiting in ppoll while it posts, and it runs the queue before
    // waiting again; only another thread has to wake it.
    if (!::pthread_equal(::pthread_self(), loopThread)) {
        wake();
    }
}

void PollLoop::run(std::function<void()> work) {
    post(std::move(work));
}

void PollLoop::wake() {
    const std::uint64_t one = 1;
    // A full counter already holds a wake-up, so a failed write loses nothing.
    [[maybe_unused]] const ssize_t written = ::write(wakeFd, &one, sizeof one);
}

Subscription PollLoop::watch(int fd, std::function<void()> onReadable) {
    auto entry = std::make_shared<Watch>();
    entry->fd = fd;
    entry->onReadable = std::move(onReadable);
    watches.push_back(entry);
    return Subscription([weak = std::weak_ptr<Watch>(entry)] {
        if (auto watch = weak.lock()) {
            watch->cancelled = true;
        }
    });
}

void PollLoop::handleTerminationSignals(std::function<void(int)> handler) {
    onSignal = std::move(handler);
    if (signalFd >= 0) {
        return;
    }
    sigset_t ending;
    sigemptyset(&ending);
    for (int signal : endingSignals) {
        sigaddset(&ending, signal);
    }
    if (::pthread_sigmask(SIG_BLOCK, &ending, &previousMask) != 0) {
        return;
    }
    signalFd = ::signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK);
    if (signalFd < 0) {
        ::pthread_sigmask(SIG_SETMASK, &previousMask, nullptr);
    }
}

int PollLoop::exec() {
    quitting = false;
    while (!quitting) {
        if (runOneQueued() || fireOneDueTimer()) {
            continue;
        }
        waitAndDispatch();
    }
    quitting = false;
    return quitStatus;
}

void PollLoop::quit(int status) {
    quitStatus = status;
    quitting = true;
}

bool PollLoop::runOneQueued() {
    std::function<void()> work;
    {
        const std::lock_guard lock(queueMutex);
        if (queue.empty()) {
            return false;
        }
        work = std::move(queue.front());
        queue.pop_front();
    }
    work();
    return true;
}

bool PollLoop::fireOneDueTimer() {
    std::erase_if(timers, [](const auto& timer) { return timer->cancelled; });
    const TimePoint current = now();
    std::shared_ptr<TimerState> due;
    for (const auto& timer : timers) {
        if (timer->next <= current && (!due || timer->next < due->next)) {
            due = timer;
        }
    }
    if (!due) {
        return false;
    }
    due->next += due->interval;
    if (due->next <= current) {
        due->next = current + due->interval;
    }
    // Held here, so that an action that destroys its own timer (or starts others) is safe.
    due->action();
    return true;
}

void PollLoop::waitAndDispatch() {
    std::vector<pollfd> descriptors;
    std::vector<std::shared_ptr<Watch>> polled;
    std::erase_if(watches, [](const auto& watch) { return watch->cancelled; });
    descriptors.reserve(watches.size() + 2);
    polled.reserve(watches.size());
    descriptors.push_back({.fd = wakeFd, .events = POLLIN, .revents = 0});
    descriptors.push_back({.fd = signalFd, .events = POLLIN, .revents = 0});
    for (const auto& watch : watches) {
        descriptors.push_back({.fd = watch->fd, .events = POLLIN, .revents = 0});
        polled.push_back(watch);
    }

    std::optional<TimePoint> nextTimer;
    for (const auto& timer : timers) {
        if (!timer->cancelled && (!nextTimer || timer->next < *nextTimer)) {
            nextTimer = timer->next;
        }
    }
    timespec timeout{};
    timespec* wait = nullptr;
    if (nextTimer) {
        const auto left =
            std::max(Nanoseconds(0), std::chrono::duration_cast<Nanoseconds>(*nextTimer - now()));
        timeout.tv_sec = static_cast<time_t>(left.count() / 1'000'000'000);
        timeout.tv_nsec = static_cast<long>(left.count() % 1'000'000'000);
        wait = &timeout;
    }
    // A negative descriptor (no signalfd) is skipped by ppoll.
    if (::ppoll(descriptors.data(), descriptors.size(), wait, nullptr) <= 0) {
        return;  // the timer is due, or a signal of another kind interrupted the wait
    }
    if (descriptors[0].revents != 0) {
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t drained = ::read(wakeFd, &count, sizeof count);
    }
    if (descriptors[1].revents != 0) {
        signalfd_siginfo info{};
        while (::read(signalFd, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
            if (onSignal) {
                onSignal(static_cast<int>(info.ssi_signo));
            }
        }
    }
    for (std::size_t index = 0; index < polled.size(); ++index) {
        const auto& watch = polled[index];
        // A handler may end another watch, or quit the loop; neither may be overtaken.
        if (descriptors[index + 2].revents != 0 && !watch->cancelled && !quitting) {
            watch->onReadable();
        }
    }
}

}  // namespace corvane
