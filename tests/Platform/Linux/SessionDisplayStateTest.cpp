// Screen and session state on the private session bus of `dbus-run-session`, which also stands
// in for the system bus; the test's own connections play the screensaver and logind.

#include "Platform/Linux/SessionDisplayState.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace corvane {
namespace {

const char* const sessionPath = "/org/freedesktop/login1/session/_31";

std::string testBusAddress() {
    const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    return address != nullptr ? address : "";
}

/// A client connection of the test bus, closed at the end of its scope.
class Connection {
public:
    Connection() {
        sd_bus_new(&bus);
        sd_bus_set_address(bus, testBusAddress().c_str());
        sd_bus_set_bus_client(bus, 1);
        started = sd_bus_start(bus) >= 0;
    }
    ~Connection() { sd_bus_flush_close_unref(bus); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    sd_bus* get() const { return bus; }
    bool isStarted() const { return started; }

    bool own(const char* name) { return sd_bus_request_name(bus, name, 0) >= 0; }
    void disown(const char* name) { sd_bus_release_name(bus, name); }

    /// Returns once the daemon has handled everything sent before.
    void sync() {
        sd_bus_message* reply = nullptr;
        sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                           "org.freedesktop.DBus", "GetId", nullptr, &reply, "");
        sd_bus_message_unref(reply);
    }

    /// ActiveChanged from `path`, to everyone, or to `destination` alone.
    void emitActiveChanged(const char* path, const char* interface, bool active,
                           const char* destination = nullptr) {
        sd_bus_message* message = nullptr;
        sd_bus_message_new_signal(bus, &message, path, interface, "ActiveChanged");
        if (destination != nullptr) {
            sd_bus_message_set_destination(message, destination);
        }
        sd_bus_message_append(message, "b", static_cast<int>(active));
        sd_bus_send(bus, message, nullptr);
        sd_bus_message_unref(message);
    }

    /// PropertiesChanged of `path` with one changed value of D-Bus type `type`.
    template <typename Value>
    void emitChanged(const char* path, const char* interface, const char* key, const char* type,
                     Value value) {
        sd_bus_message* message = nullptr;
        sd_bus_message_new_signal(bus, &message, path, "org.freedesktop.DBus.Properties",
                                  "PropertiesChanged");
        sd_bus_message_append(message, "sa{sv}as", interface, 1, key, type, value, 0);
        sd_bus_send(bus, message, nullptr);
        sd_bus_message_unref(message);
    }

    /// The unique names of every connection on the bus.
    std::vector<std::string> uniqueNames() {
        std::vector<std::string> names;
        sd_bus_message* reply = nullptr;
        char** all = nullptr;
        if (sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus", "ListNames", nullptr, &reply, "") >= 0 &&
            sd_bus_message_read_strv(reply, &all) >= 0) {
            for (char** name = all; *name != nullptr; ++name) {
                if (**name == ':') {
                    names.emplace_back(*name);
                }
                std::free(*name);
            }
            std::free(static_cast<void*>(all));
        }
        sd_bus_message_unref(reply);
        return names;
    }

    /// True when some connection's match rule contains `fragment` (dbus-daemon's statistics).
    bool hasMatchRule(const std::string& fragment) {
        sd_bus_message* reply = nullptr;
        bool found = false;
        if (sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus.Debug.Stats", "GetAllMatchRules", nullptr,
                               &reply, "") < 0) {
            return false;
        }
        sd_bus_message_enter_container(reply, 'a', "{sas}");
        while (sd_bus_message_enter_container(reply, 'e', "sas") > 0) {
            const char* owner = nullptr;
            char** rules = nullptr;
            sd_bus_message_read(reply, "s", &owner);
            sd_bus_message_read_strv(reply, &rules);
            for (char** rule = rules; rule != nullptr && *rule != nullptr; ++rule) {
                found = found || std::string(*rule).find(fragment) != std::string::npos;
                std::free(*rule);
            }
            std::free(static_cast<void*>(rules));
            sd_bus_message_exit_container(reply);
        }
        sd_bus_message_unref(reply);
        return found;
    }

private:
    sd_bus* bus = nullptr;
    bool started = false;
};

/// Answers logind's session lookup with sessionPath, as logind on the system bus would.
class FakeLogind {
public:
    explicit FakeLogind(Connection& connection) {
        sd_bus_add_object(connection.get(), &slot, "/org/freedesktop/login1", &handle, this);
    }
    ~FakeLogind() { sd_bus_slot_unref(slot); }
    FakeLogind(const FakeLogind&) = delete;
    FakeLogind& operator=(const FakeLogind&) = delete;

    std::string askedFor;

private:
    static int handle(sd_bus_message* call, void* data, sd_bus_error*) {
        const char* session = nullptr;
        if (!sd_bus_message_is_method_call(call, "org.freedesktop.login1.Manager", "GetSession") ||
            sd_bus_message_read(call, "s", &session) < 0) {
            return 0;
        }
        static_cast<FakeLogind*>(data)->askedFor = session;
        return sd_bus_reply_method_return(call, "o", sessionPath);
    }

    sd_bus_slot* slot = nullptr;
};

class SessionDisplayStateTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_FALSE(testBusAddress().empty())
            << "no D-Bus session bus: run this under dbus-run-session";
    }

    /// Drives `state` and the test's `connections` as an event loop would until `done` holds
    /// or twenty seconds pass (generous, since CI runs the suite two at a time on a loaded
    /// machine); answers `done()`.
    static bool runUntil(SessionDisplayState& state, const std::vector<Connection*>& connections,
                         const std::function<bool()>& done) {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        state.dispatch();
        while (!done() && std::chrono::steady_clock::now() < deadline) {
            std::vector<pollfd> descriptors;
            for (const int descriptor : state.descriptors()) {
                descriptors.push_back({descriptor, POLLIN, 0});
            }
            ::poll(descriptors.data(), descriptors.size(), 10);
            state.dispatch();
            for (Connection* connection : connections) {
                while (sd_bus_process(connection->get(), nullptr) > 0) {
                }
            }
        }
        return done();
    }

    std::vector<DisplayEvent> events;
};

TEST_F(SessionDisplayStateTest, ScreensaverOwnerSleepsAndWakesTheScreens) {
    struct Row {
        const char* service;
        const char* path;
    };
    const Row rows[] = {
        {"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
        {"org.freedesktop.ScreenSaver", "/ScreenSaver"},
        {"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"},
    };
    for (const auto& [service, path] : rows) {
        SCOPED_TRACE(path);
        Connection owner;
        Connection impostor;
        Connection successor;
        ASSERT_TRUE(owner.own(service));
        events.clear();
        SessionDisplayState state(BusAddress::at(testBusAddress()), BusAddress::none());
        Subscription subscription = state.observe([&](DisplayEvent e) { events.push_back(e); });
        ASSERT_FALSE(state.descriptors().empty());

        // Anyone may send the signal, to everyone or to each connection directly; only the
        // name's owner is believed.
        impostor.emitActiveChanged(path, service, true);
        for (const std::string& name : impostor.uniqueNames()) {
            impostor.emitActiveChanged(path, service, true, name.c_str());
        }
        impostor.sync();
        owner.emitActiveChanged(path, service, true);
        owner.emitActiveChanged(path, service, false);
        ASSERT_TRUE(runUntil(state, {}, [&] { return events.size() >= 2; }));
        EXPECT_EQ(events,
                  (std::vector{DisplayEvent::screensDidSleep, DisplayEvent::screensDidWake}));

        // The name changes hands: the new owner is believed, the old one no longer is.
        owner.disown(service);
        ASSERT_TRUE(successor.own(service));
        for (const std::string& name : owner.uniqueNames()) {
            owner.emitActiveChanged(path, service, false, name.c_str());
        }
        owner.sync();
        successor.emitActiveChanged(path, service, true);
        ASSERT_TRUE(runUntil(state, {}, [&] { return events.size() >= 3; }));
        EXPECT_EQ(events.back(), DisplayEvent::screensDidSleep);
        successor.disown(service);
    }
}

TEST_F(SessionDisplayStateTest, LogindActiveChangesOfThisSessionOnly) {
    // A client of the test bus stands in for logind on the system bus.
    Connection logind;
    Connection impostor;
    FakeLogind manager(logind);
    ASSERT_TRUE(logind.own("org.freedesktop.login1"));

    SessionDisplayState state(BusAddress::none(), BusAddress::at(testBusAddress()));
    Subscription subscription = state.observe([&](DisplayEvent e) { events.push_back(e); });
    ASSERT_TRUE(runUntil(state, {&logind, &impostor}, [&] {
        return logind.hasMatchRule("path='" + std::string(sessionPath) + "'");
    }));
    EXPECT_EQ(manager.askedFor, "auto");

    const char* session = "org.freedesktop.login1.Session";
    impostor.emitChanged(sessionPath, session, "Active", "b", 0);
    for (const std::string& name : impostor.uniqueNames()) {
        sd_bus_message* message = nullptr;
        sd_bus_message_new_signal(impostor.get(), &message, sessionPath,
                                  "org.freedesktop.DBus.Properties", "PropertiesChanged");
        sd_bus_message_set_destination(message, name.c_str());
        sd_bus_message_append(message, "sa{sv}as", session, 1, "Active", "b", 0, 0);
        sd_bus_send(impostor.get(), message, nullptr);
        sd_bus_message_unref(message);
    }
    impostor.sync();
    // Sent in order from one connection, so a wrongly believed one would arrive first.
    logind.emitChanged("/org/freedesktop/login1/session/_32", session, "Active", "b", 0);
    logind.emitChanged(sessionPath, "org.freedesktop.login1.Other", "Active", "b", 0);
    logind.emitChanged(sessionPath, session, "IdleHint", "b", 1);
    logind.emitChanged(sessionPath, session, "Active", "s", "no");
    logind.emitChanged(sessionPath, session, "Active", "b", 0);
    logind.emitChanged(sessionPath, session, "Active", "b", 1);
    ASSERT_TRUE(runUntil(state, {&logind}, [&] { return events.size() >= 2; }));
    EXPECT_EQ(events, (std::vector{DisplayEvent::sessionDidResignActive,
                                   DisplayEvent::sessionDidBecomeActive}));
}

TEST_F(SessionDisplayStateTest, WithoutABusNothingIsPolledOrReported) {
    const BusAddress nowhere = BusAddress::at("unix:path=/nonexistent/corvane-bus");
    for (const auto& [session, system] :
         {std::pair{BusAddress::none(), BusAddress::none()}, std::pair{nowhere, nowhere}}) {
        SessionDisplayState state(session, system);
        Subscription subscription = state.observe([&](DisplayEvent e) { events.push_back(e); });
        state.dispatch();
        EXPECT_TRUE(state.descriptors().empty());
    }
    EXPECT_TRUE(events.empty());
}

}  // namespace
}  // namespace corvane
