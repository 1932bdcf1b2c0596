#include "Platform/Qt/QtSessionDisplayState.h"

#include <QObject>
#include <QPointer>
#include <QSocketNotifier>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace corvane {

QtSessionDisplayState::QtSessionDisplayState(std::unique_ptr<SessionDisplayState> state)
    : state(std::move(state)), context(std::make_unique<QObject>()) {
    watchDescriptors();
    // Messages that came in while the state waited for the daemons' answers are already read,
    // so no notifier would announce them; they are handled once the loop runs, after the
    // observers had their chance to subscribe.
    QTimer::singleShot(0, context.get(), [this] { dispatch(); });
}

QtSessionDisplayState::~QtSessionDisplayState() = default;

Subscription QtSessionDisplayState::observe(std::function<void(DisplayEvent)> handler) {
    return state->observe(std::move(handler));
}

void QtSessionDisplayState::dispatch() {
    const QPointer<QObject> alive = context.get();
    state->dispatch();
    if (alive) {
        watchDescriptors();
    }
}

void QtSessionDisplayState::watchDescriptors() {
    const std::vector<int> descriptors = state->descriptors();
    // A bus that went away is no longer watched; its notifier may be the one being handled,
    // so it goes once the loop is back.
    std::erase_if(notifiers, [&](QSocketNotifier* notifier) {
        const bool gone = std::find(descriptors.begin(), descriptors.end(), notifier->socket()) ==
                          descriptors.end();
        if (gone) {
            notifier->setEnabled(false);
            notifier->deleteLater();
        }
        return gone;
    });
    for (const int descriptor : descriptors) {
        const bool watched = std::any_of(notifiers.begin(), notifiers.end(), [&](auto* notifier) {
            return notifier->socket() == descriptor;
        });
        if (!watched) {
            auto* notifier = new QSocketNotifier(descriptor, QSocketNotifier::Read, context.get());
            QObject::connect(notifier, &QSocketNotifier::activated, context.get(),
                             [this] { dispatch(); });
            notifiers.push_back(notifier);
        }
    }
}

}  // namespace corvane
