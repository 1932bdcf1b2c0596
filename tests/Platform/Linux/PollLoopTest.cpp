#include "Platform/Linux/PollLoop.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace corvane {
namespace {

// Every test ends its loop through quit; one that never does hangs until ctest's time limit.

TEST(PollLoop, PostedAndBackgroundWorkRunInQueueOrderAndQuitGivesItsStatus) {
    PollLoop loop;
    std::vector<std::string> order;
    loop.post([&] {
        order.push_back("posted 1");
        // Queued behind what was already queued, not run at once.
        loop.post([&] { order.push_back("posted from work"); });
    });
    loop.run([&] { order.push_back("background"); });
    loop.post([&] { order.push_back("posted 2"); });
    loop.post([&] { loop.post([&] { loop.quit(7); }); });
    EXPECT_EQ(loop.exec(), 7);
    EXPECT_EQ(order,
              (std::vector<std::string>{"posted 1", "background", "posted 2", "posted from work"}));
}

TEST(PollLoop, WorkQueuedBehindQuitWaitsForTheNextRun) {
    PollLoop loop;
    bool ran = false;
    loop.post([&] { loop.quit(1); });
    loop.post([&] { ran = true; });
    EXPECT_EQ(loop.exec(), 1);
    EXPECT_FALSE(ran);
    loop.post([&] { loop.quit(2); });
    EXPECT_EQ(loop.exec(), 2);
    EXPECT_TRUE(ran);
}

TEST(PollLoop, TimersFireEarliestFirstAndNeverOnceDestroyed) {
    PollLoop loop;
    std::vector<std::string> fired;
    auto dropped = loop.startRepeating(0.001, 0, [&] { fired.push_back("dropped"); });
    dropped.reset();
    std::unique_ptr<Timer> once;
    once = loop.startRepeating(0.002, 0, [&] {
        fired.push_back("once");
        once.reset();  // a timer's action may end its own timer, as stopping a monitor does
    });
    auto fast = loop.startRepeating(0.003, 0, [&] { fired.push_back("fast"); });
    auto slow = loop.startRepeating(0.020, 0.5, [&] {
        fired.push_back("slow");
        // On a machine too busy to fire the fast timer in time, the slow one waits its turn.
        if (std::count(fired.begin(), fired.end(), "fast") >= 2) {
            loop.quit(0);
        }
    });
    EXPECT_EQ(slow->interval(), 0.020);
    EXPECT_EQ(loop.exec(), 0);

    ASSERT_GE(fired.size(), 3u);
    EXPECT_EQ(fired.front(), "once");
    EXPECT_EQ(fired[1], "fast");
    EXPECT_EQ(fired.back(), "slow");
    EXPECT_EQ(std::count(fired.begin(), fired.end(), "once"), 1);
    EXPECT_EQ(std::count(fired.begin(), fired.end(), "dropped"), 0);
}

TEST(PollLoop, WorkPostedFromAnotherThreadWakesTheLoop) {
    PollLoop loop;
    // No timer and nothing queued: only the other thread's post can end the wait.
    std::thread poster([&] { loop.post([&] { loop.quit(3); }); });
    EXPECT_EQ(loop.exec(), 3);
    poster.join();
}

class Pipe {
public:
    Pipe() { EXPECT_EQ(::pipe2(ends, O_CLOEXEC | O_NONBLOCK), 0); }
    ~Pipe() {
        ::close(ends[0]);
        ::close(ends[1]);
    }
    int readEnd() const { return ends[0]; }
    void write(char byte) { EXPECT_EQ(::write(ends[1], &byte, 1), 1); }
    std::string drain() {
        std::string text;
        char byte = 0;
        while (::read(ends[0], &byte, 1) == 1) {
            text += byte;
        }
        return text;
    }

private:
    int ends[2] = {-1, -1};
};

TEST(PollLoop, AWatchedDescriptorIsReportedUntilItsSubscriptionEnds) {
    PollLoop loop;
    Pipe watched;
    Pipe unwatched;
    std::vector<std::string> received;
    Subscription stopped = loop.watch(unwatched.readEnd(), [&] { received.push_back("stopped"); });
    stopped.reset();
    unwatched.write('x');
    Subscription watch = loop.watch(watched.readEnd(), [&] {
        received.push_back(watched.drain());
        if (received.size() == 2) {
            loop.quit(0);
        } else {
            watched.write('b');
        }
    });
    watched.write('a');
    EXPECT_EQ(loop.exec(), 0);
    EXPECT_EQ(received, (std::vector<std::string>{"a", "b"}));
}

TEST(PollLoop, TerminationSignalsArriveFromTheLoop) {
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(signal);
        int received = 0;
        {
            PollLoop loop;
            loop.handleTerminationSignals([&](int number) {
                received = number;
                loop.quit(128 + number);
            });
            // Blocked now, so it waits for the loop instead of ending the test program.
            loop.post([signal] { ::raise(signal); });
            EXPECT_EQ(loop.exec(), 128 + signal);
        }
        EXPECT_EQ(received, signal);
        // The loop gave the signal mask back: the signal is no longer blocked.
        sigset_t mask;
        ::pthread_sigmask(SIG_BLOCK, nullptr, &mask);
        EXPECT_FALSE(sigismember(&mask, signal));
    }
}

}  // namespace
}  // namespace corvane
