#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "CorvaneShared/SignalListener.h"

namespace corvane {
namespace {

using SharedSettings::Signal;

// Refuses "suite.quitAgent" and records what it is asked.
class RecordingBus final : public SignalBus {
public:
    void post(std::string_view name) override { calls.push_back("post " + std::string(name)); }
    Subscription subscribe(std::string_view name, std::function<void()>) override {
        if (name == "suite.quitAgent") {
            return {};
        }
        calls.push_back("subscribe " + std::string(name));
        return Subscription([this, name = std::string(name)] { calls.push_back("end " + name); });
    }

    std::vector<std::string> calls;
};

TEST(SignalListener, KeepsAcceptedRegistrationsAndCancelsThemInOrder) {
    RecordingBus bus;
    {
        SignalListener listener(bus, "suite");
        listener.listen(Signal::settings, [] {});
        listener.listen(Signal::quitAgent, [] {});
        listener.listen(Signal::menuBarChanged, [] {});
        EXPECT_EQ(listener.registrationCount(), 2u);
        SharedSettings::post(bus, Signal::checkForUpdates, "other");
    }
    EXPECT_EQ(bus.calls,
              (std::vector<std::string>{
                  "subscribe suite.settings", "subscribe suite.menuBarChanged",
                  "post other.checkForUpdates", "end suite.settings", "end suite.menuBarChanged"}));
}

}  // namespace
}  // namespace corvane
