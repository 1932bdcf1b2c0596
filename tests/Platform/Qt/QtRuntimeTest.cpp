#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include "Platform/Qt/QtRuntime.h"

namespace corvane {
namespace {

class QtRuntimeTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        static int argc = 1;
        static char name[] = "corvane-qt-tests";
        static char* argv[] = {name, nullptr};
        static QCoreApplication application(argc, argv);
    }

    /// Runs the event loop until `quit` is called or a generous deadline passes.
    static void runLoop() {
        QTimer::singleShot(5000, [] { QCoreApplication::exit(1); });
        QCoreApplication::exec();
    }
};

TEST_F(QtRuntimeTest, BackgroundResultComesBackOnTheMainThread) {
    QtRuntime runtime;
    const auto mainThread = std::this_thread::get_id();
    // Atomic although the post orders the write before the read: that order is kept by Qt's
    // event queue, which ThreadSanitizer (make test-tsan) cannot see into.
    std::atomic<std::thread::id> workerThread;
    std::thread::id deliveryThread;
    runtime.run([&] {
        workerThread = std::this_thread::get_id();
        runtime.post([&] {
            deliveryThread = std::this_thread::get_id();
            QCoreApplication::quit();
        });
    });
    runLoop();
    EXPECT_NE(workerThread.load(), mainThread);
    EXPECT_EQ(deliveryThread, mainThread);
}

TEST_F(QtRuntimeTest, TimerRepeatsUntilDestroyed) {
    QtRuntime runtime;
    int firings = 0;
    int witnessFirings = 0;
    std::unique_ptr<Timer> timer;
    std::unique_ptr<Timer> witness;
    timer = runtime.startRepeating(0.01, 0.002, [&] {
        if (++firings != 3) {
            return;
        }
        timer.reset();
        // A witness with the same interval, started now, fires its second time a whole interval
        // after the destroyed timer would next have been due. Qt runs due timers in deadline
        // order however late the loop gets to them, so a surviving timer would fire first.
        witness = runtime.startRepeating(0.01, 0, [&] {
            if (++witnessFirings == 2) {
                QCoreApplication::quit();
            }
        });
    });
    EXPECT_DOUBLE_EQ(timer->interval(), 0.01);
    runLoop();
    EXPECT_EQ(witnessFirings, 2);
    EXPECT_EQ(firings, 3);
}

TEST_F(QtRuntimeTest, DestructionWaitsForRunningTasks) {
    // The task may not finish until the runtime's destruction has begun, so it is still running
    // when the destructor starts, however the threads are scheduled; only a destructor that
    // waits sees it finish.
    std::promise<void> destructionBegins;
    std::atomic<bool> finished = false;
    {
        QtRuntime runtime;
        struct OpensOnDestruction {
            std::promise<void>& gate;
            ~OpensOnDestruction() { gate.set_value(); }
        };
        // Declared after the runtime, so destroyed just before it.
        OpensOnDestruction opener{destructionBegins};
        runtime.run([&finished, begun = destructionBegins.get_future().share()] {
            begun.wait();
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            finished = true;
        });
    }
    EXPECT_TRUE(finished);
}

}  // namespace
}  // namespace corvane
