#pragma once

#include <QDBusConnection>

#include <functional>
#include <memory>

#include "Foundation/ObserverList.h"
#include "Platform/DisplayState.h"

namespace corvane {

/// Screen sleep and wake as the session's screensaver service reports them (`ActiveChanged` of
/// org.freedesktop.ScreenSaver or org.gnome.ScreenSaver, from the owner of that name only), and
/// session switches as logind reports them (the `Active` property of this process's session,
/// or of the user's display session when the process belongs to none). A bus that is not
/// connected, or that lacks the service, reports nothing, so sampling never pauses for it.
/// Create, observe and destroy on the main thread inside a QCoreApplication's lifetime.
class SessionDisplayState final : public DisplayStateSource {
public:
    explicit SessionDisplayState(QDBusConnection sessionBus = QDBusConnection::sessionBus(),
                                 QDBusConnection systemBus = QDBusConnection::systemBus());
    ~SessionDisplayState() override;

    SessionDisplayState(const SessionDisplayState&) = delete;
    SessionDisplayState& operator=(const SessionDisplayState&) = delete;

    /// Events arrive on the main thread until the subscription ends (it may outlive this).
    Subscription observe(std::function<void(DisplayEvent)> handler) override;

private:
    class Receiver;

    ObserverList<DisplayEvent> observers;
    std::unique_ptr<Receiver> receiver;
};

}  // namespace corvane
