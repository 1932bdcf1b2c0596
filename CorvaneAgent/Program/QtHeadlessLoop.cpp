#include "CorvaneAgent/Program/QtHeadlessLoop.h"

#include <QCoreApplication>

#include <utility>

#include "Platform/Linux/WatchedDisplayState.h"
#include "Platform/Qt/QtDescriptorWatch.h"
#include "Platform/Qt/TerminationSignals.h"

namespace corvane {

QtHeadlessLoop::QtHeadlessLoop() = default;

QtHeadlessLoop::~QtHeadlessLoop() = default;

int QtHeadlessLoop::exec() {
    return QCoreApplication::exec();
}

void QtHeadlessLoop::quit(int status) {
    QCoreApplication::exit(status);
}

void QtHeadlessLoop::handleTerminationSignals(std::function<void(int)> onSignal) {
    endingSignals = std::make_unique<TerminationSignals>(std::move(onSignal));
}

std::unique_ptr<DisplayStateSource> QtHeadlessLoop::makeDisplayState() {
    return std::make_unique<WatchedDisplayState>(std::make_unique<SessionDisplayState>(),
                                                 watchDescriptor, qtRuntime);
}

}  // namespace corvane
