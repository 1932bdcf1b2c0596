#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QTimer>

#include <atomic>
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
    std::thread::id workerThread;
    std::thread::id deliveryThread;
    runtime.run([&] {
        workerThread = std::this_thread::get_id();
        runtime.post([&] {
            deliveryThread = std::this_thread::get_id();
            QCoreApplication::quit();
        });
    });
    runLoop();
    EXPECT_NE(workerThread, mainThread);
    EXPECT_EQ(deliveryThread, mainThread);
}

TEST_F(QtRuntimeTest, TimerRepeatsUntilDestroyed) {
    QtRuntime runtime;
    int firings = 0;
    std::unique_ptr<Timer> timer;
    timer = runtime.startRepeating(0.01, 0.002, [&] {
        if (++firings == 3) {
            timer.reset();
            // Had the timer survived its destruction, it would fire again before this.
            QTimer::singleShot(50, [] { QCoreApplication::quit(); });
        }
    });
    EXPECT_DOUBLE_EQ(timer->interval(), 0.01);
    runLoop();
    EXPECT_EQ(firings, 3);
}

TEST_F(QtRuntimeTest, DestructionWaitsForRunningTasks) {
    std::atomic<bool> finished = false;
    {
        QtRuntime runtime;
        runtime.run([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            finished = true;
        });
    }
    EXPECT_TRUE(finished);
}

}  // namespace
}  // namespace corvane
