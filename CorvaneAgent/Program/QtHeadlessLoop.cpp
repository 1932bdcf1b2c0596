#include "CorvaneAgent/Program/QtHeadlessLoop.h"

#include <QCoreApplication>

#include <utility>

#include "Platform/Qt/QtSessionDisplayState.h"
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
    return std::make_unique<QtSessionDisplayState>();
}

}  // namespace corvane
