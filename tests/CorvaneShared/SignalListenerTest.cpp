#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CorvaneShared/SignalListener.h"

namespace corvane {
namespace {

using SharedSettings::Signal;

// Refuses "suite.quitAgent", hands out tokens from 7 up, and records what it is asked.
class RecordingBus final : public SignalBus {
public:
    void post(std::string_view name) override { calls.push_back("post " + std::string(name)); }
    std::optional<SignalToken> subscribe(std::string_view name, std::function<void()>) override {
        if (name == "suite.quitAgent") {
            return std::nullopt;
        }
        calls.push_back("subscribe " + std::string(name));
        return nextToken++;
    }
    void cancel(SignalToken token) override { calls.push_back("cancel " + std::to_string(token)); }

    std::vector<std::string> calls;
    SignalToken nextToken = 7;
};

TEST(SignalListener, KeepsAcceptedRegistrationsAndCancelsThemInOrder) {
    RecordingBus bus;
    {
        SignalListener listener(bus, "suite");
        listener.listen(Signal::settings, [] {});
        listener.listen(Signal::quitAgent, [] {});
        listener.listen(Signal::menuBarChanged, [] {});
        EXPECT_EQ(listener.tokens(), (std::vector<SignalToken>{7, 8}));
        SharedSettings::post(bus, Signal::checkForUpdates, "other");
    }
    EXPECT_EQ(bus.calls, (std::vector<std::string>{
                             "subscribe suite.settings", "subscribe suite.menuBarChanged",
                             "post other.checkForUpdates", "cancel 7", "cancel 8"}));
}

}  // namespace
}  // namespace corvane
