#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

#include "CorvaneShared/SignalListener.h"
#include "Platform/Qt/DBusSignalMember.h"
#include "Platform/Qt/QtDBusSignalBus.h"
#include "tests/Platform/Qt/BusTestSupport.h"

namespace corvane {
namespace {

using SharedSettings::Signal;

class QtDBusSignalBusTest : public testing::BusTest {
protected:
    /// A handler that records `who`, marked when it runs off the main thread.
    std::function<void()> hear(const std::string& who) {
        return [this, who, mainThread = std::this_thread::get_id()] {
            heard.push_back(std::this_thread::get_id() == mainThread ? who : who + " elsewhere");
        };
    }
    /// Runs the event loop until `count` deliveries were heard, then a little longer for any
    /// that should not come; answers what was heard, sorted. Signals of different names may be
    /// delivered in another order than they were posted, so no one of them marks the end.
    std::vector<std::string> heardAfter(std::size_t count) {
        runUntil([&] { return heard.size() >= count; });
        QDeadlineTimer straggler(200);
        while (!straggler.hasExpired()) {
            QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        }
        std::vector<std::string> sorted = heard;
        std::sort(sorted.begin(), sorted.end());
        return sorted;
    }

    QtDBusSignalBus bus;
    std::vector<std::string> heard;
};

TEST_F(QtDBusSignalBusTest, EveryListenerOfTheSuiteHearsEachPostOnceOnTheMainThread) {
    SignalListener first(bus, "suite-a"), second(bus, "suite-a"), stranger(bus, "suite-b");
    first.listen(Signal::settings, hear("first"));
    second.listen(Signal::settings, hear("second"));
    stranger.listen(Signal::settings, hear("stranger"));
    first.listen(Signal::menuBarChanged, hear("done"));
    SharedSettings::post(bus, Signal::settings, "suite-a");
    SharedSettings::post(bus, Signal::menuBarChanged, "suite-a");
    EXPECT_EQ(heardAfter(3), (std::vector<std::string>{"done", "first", "second"}));
}

// Guards a handler running after its listener was destroyed by an earlier handler of the same
// delivery, and deliveries already received when it was destroyed.
TEST_F(QtDBusSignalBusTest, DestroyedListenerHearsNothingMore) {
    SignalListener survivor(bus, "suite");
    auto doomed = std::make_unique<SignalListener>(bus, "suite");
    survivor.listen(Signal::settings, [&] {
        heard.emplace_back("survivor");
        doomed.reset();
    });
    doomed->listen(Signal::settings, hear("doomed"));
    survivor.listen(Signal::quitAgent, hear("done"));
    SharedSettings::post(bus, Signal::settings, "suite");
    SharedSettings::post(bus, Signal::settings, "suite");
    SharedSettings::post(bus, Signal::quitAgent, "suite");
    EXPECT_EQ(heardAfter(3), (std::vector<std::string>{"done", "survivor", "survivor"}));
}

TEST_F(QtDBusSignalBusTest, SuiteNamesOfAnyBytesAndLengthReachTheirOwnListenersOnly) {
    const std::string longSuite(300, 'x');
    const std::tuple<std::string, std::string, bool> rows[] = {
        {"quote\"and'apostrophe", "quote\"and'apostrophe", true},
        {"gr\xc3\xbc\xc3\x9f", "gr\xc3\xbc\xc3\x9f", true},
        {longSuite + "a", longSuite + "a", true},
        {longSuite + "a", longSuite + "b", false},
        {"a.b", "a_2eb", false},
    };
    SignalListener sentinel(bus, "sentinel");
    sentinel.listen(Signal::quitAgent, hear("done"));
    for (const auto& [listened, posted, isHeard] : rows) {
        SCOPED_TRACE(posted);
        heard.clear();
        SignalListener listener(bus, listened);
        listener.listen(Signal::settings, hear("listener"));
        SharedSettings::post(bus, Signal::settings, posted);
        SharedSettings::post(bus, Signal::quitAgent, "sentinel");
        EXPECT_EQ(heardAfter(isHeard ? 2 : 1).size(), isHeard ? 2u : 1u);
    }
}

TEST_F(QtDBusSignalBusTest, WithoutABusListeningIsRefusedSilently) {
    QtDBusSignalBus nowhere(noBus());
    SignalListener listener(nowhere, "suite");
    listener.listen(Signal::settings, [] {});
    SharedSettings::post(nowhere, Signal::settings, "suite");
    EXPECT_FALSE(nowhere.isConnected());
    EXPECT_EQ(listener.registrationCount(), 0u);
}

}  // namespace
}  // namespace corvane
