#include "Platform/Qt/TerminationSignals.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <QCoreApplication>
#include <QElapsedTimer>

#include <vector>

namespace corvane {
namespace {

class TerminationSignalsTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        if (QCoreApplication::instance() == nullptr) {
            static int argc = 1;
            static char name[] = "corvane-qt-tests";
            static char* argv[] = {name, nullptr};
            static QCoreApplication application(argc, argv);
        }
    }

    /// Runs the event loop until `count` signals arrived or a generous deadline passes.
    void runUntilSignals(std::size_t count) {
        QElapsedTimer elapsed;
        elapsed.start();
        while (received.size() < count && elapsed.elapsed() < 5000) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
        }
    }

    static void (*dispositionOf(int signal))(int) {
        struct sigaction current {};
        ::sigaction(signal, nullptr, &current);
        return current.sa_handler;
    }

    std::vector<int> received;
};

TEST_F(TerminationSignalsTest, EachEndingSignalArrivesFromTheEventLoop) {
    TerminationSignals ending([this](int signal) { received.push_back(signal); });
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        ::raise(signal);
    }
    // The handler only wrote to the pipe; nothing ran inside it.
    EXPECT_TRUE(received.empty());
    runUntilSignals(3);
    EXPECT_EQ(received, (std::vector<int>{SIGTERM, SIGINT, SIGHUP}));
}

TEST_F(TerminationSignalsTest, DefaultDispositionsComeBackWhenDestroyed) {
    {
        TerminationSignals ending([this](int signal) { received.push_back(signal); });
        EXPECT_NE(dispositionOf(SIGTERM), SIG_DFL);
    }
    for (int signal : {SIGTERM, SIGINT, SIGHUP}) {
        EXPECT_EQ(dispositionOf(signal), SIG_DFL) << signal;
    }
    // A second one in the same process works as the first did.
    TerminationSignals again([this](int signal) { received.push_back(signal); });
    ::raise(SIGHUP);
    runUntilSignals(1);
    EXPECT_EQ(received, (std::vector<int>{SIGHUP}));
}

}  // namespace
}  // namespace corvane
