#include "Platform/Qt/QtRuntime.h"

#include <QMetaObject>
#include <QTimer>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

namespace corvane {

namespace {

class QtTimer final : public Timer {
public:
    QtTimer(double intervalSeconds, double toleranceSeconds, std::function<void()> action)
        : seconds(intervalSeconds) {
        // QTimer counts whole milliseconds in an int; hold absurd intervals at its limit.
        const double milliseconds = std::clamp(std::round(intervalSeconds * 1000.0), 1.0,
                                               double(std::numeric_limits<int>::max()));
        timer.setInterval(static_cast<int>(milliseconds));
        // Qt offers no tolerance figure; a coarse timer may fire up to 5 % off, which is the
        // closest it comes to letting the system coalesce wake-ups.
        timer.setTimerType(toleranceSeconds > 0 ? Qt::CoarseTimer : Qt::PreciseTimer);
        QObject::connect(&timer, &QTimer::timeout, std::move(action));
        timer.start();
    }

    double interval() const override { return seconds; }

private:
    double seconds;
    QTimer timer;
};

}  // namespace

QtRuntime::QtRuntime() {
    pool.setMaxThreadCount(2);
}

QtRuntime::~QtRuntime() {
    pool.waitForDone();
}

TimePoint QtRuntime::now() const {
    return std::chrono::steady_clock::now();
}

std::unique_ptr<Timer> QtRuntime::startRepeating(double intervalSeconds, double toleranceSeconds,
                                                 std::function<void()> action) {
    return std::make_unique<QtTimer>(intervalSeconds, toleranceSeconds, std::move(action));
}

void QtRuntime::post(std::function<void()> work) {
    QMetaObject::invokeMethod(&mainThreadContext, std::move(work), Qt::QueuedConnection);
}

void QtRuntime::run(std::function<void()> work) {
    pool.start(std::move(work));
}

}  // namespace corvane
