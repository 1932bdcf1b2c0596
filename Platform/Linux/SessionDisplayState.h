#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Foundation/ObserverList.h"
#include "Platform/DisplayState.h"

namespace corvane {

/// Which D-Bus bus to connect to.
struct BusAddress {
    enum class Kind {
        none,         ///< No bus: nothing is reported.
        userSession,  ///< The user's session bus (DBUS_SESSION_BUS_ADDRESS, else the runtime
                      ///< dir's).
        system,       ///< The system bus.
        address,      ///< The bus at `address` ("unix:path=..."), for tests.
    };
    Kind kind = Kind::none;
    std::string address;

    static BusAddress none() { return {}; }
    static BusAddress userSession() { return {Kind::userSession, {}}; }
    static BusAddress system() { return {Kind::system, {}}; }
    static BusAddress at(std::string address) { return {Kind::address, std::move(address)}; }
};

/// Screen sleep and wake as the session's screensaver service reports them (`ActiveChanged` of
/// org.freedesktop.ScreenSaver or org.gnome.ScreenSaver, from the owner of that name only), and
/// session switches as logind reports them (the `Active` property of this process's session,
/// or of the user's display session when the process belongs to none). A bus that cannot be
/// reached, or that lacks the service, reports nothing, so sampling never pauses for it; a bus
/// that goes away later stops reporting.
///
/// No thread or loop of its own: the caller's event loop polls descriptors() for input and
/// calls dispatch(), which never blocks. Construction blocks on the bus daemons' own answers
/// (the connection, match rules, the names' current owners), never on logind. One thread: the
/// one that created it.
class SessionDisplayState final : public DisplayStateSource {
public:
    explicit SessionDisplayState(BusAddress sessionBus = BusAddress::userSession(),
                                 BusAddress systemBus = BusAddress::system());
    ~SessionDisplayState() override;

    SessionDisplayState(const SessionDisplayState&) = delete;
    SessionDisplayState& operator=(const SessionDisplayState&) = delete;

    /// Events arrive from dispatch() until the subscription ends (it may outlive this).
    Subscription observe(std::function<void(DisplayEvent)> handler) override;

    /// The connections' descriptors to poll for input (POLLIN), none once no bus is left. The
    /// list changes only inside dispatch(), when a bus goes away.
    [[nodiscard]] std::vector<int> descriptors() const;

    /// Handles every message already received and reads what is waiting, without blocking, and
    /// reports the events they carry. Call it once after construction (messages may have come
    /// in while it waited for the daemons' answers) and whenever a descriptor is readable.
    void dispatch();

private:
    struct Bus;

    ObserverList<DisplayEvent> observers;
    std::vector<std::unique_ptr<Bus>> buses;
    /// Events read by the current dispatch(), told once the buses are left alone.
    std::vector<DisplayEvent> pending;
    /// Expires with this object, which an observer may destroy while being told.
    std::shared_ptr<char> lifetime = std::make_shared<char>();
};

}  // namespace corvane
