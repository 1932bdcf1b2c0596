#pragma once

#include <memory>

#include "CorvaneAgent/Headless/HeadlessSession.h"
#include "Platform/Qt/QtRuntime.h"

namespace corvane {

class TerminationSignals;

/// A headless run on Qt's event loop (`--render` draws with Qt, and the Qt program started
/// directly runs every mode): Qt's runtime, its termination signals and the session bus's view
/// of the screens. Create it inside a QCoreApplication's lifetime, on the main thread.
class QtHeadlessLoop final : public HeadlessLoop {
public:
    QtHeadlessLoop();
    ~QtHeadlessLoop() override;

    Runtime runtime() override { return qtRuntime.runtime(); }
    int exec() override;
    void quit(int status) override;
    void handleTerminationSignals(std::function<void(int signal)> onSignal) override;
    std::unique_ptr<DisplayStateSource> makeDisplayState() override;

private:
    QtRuntime qtRuntime;
    std::unique_ptr<TerminationSignals> endingSignals;
};

}  // namespace corvane
