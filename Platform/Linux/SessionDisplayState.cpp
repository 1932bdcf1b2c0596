#include "Platform/Linux/SessionDisplayState.h"

#include <systemd/sd-bus.h>

#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

namespace corvane {

namespace {

struct ScreensaverService {
    const char* name;
    const char* interface;
};

// KDE, Xfce, Cinnamon and others own the freedesktop name; GNOME Shell announces its lock
// under its own. Where both exist the monitor is told twice, which it tolerates.
constexpr ScreensaverService screensaverServices[] = {
    {"org.freedesktop.ScreenSaver", "org.freedesktop.ScreenSaver"},
    {"org.gnome.ScreenSaver", "org.gnome.ScreenSaver"},
};

constexpr const char* busService = "org.freedesktop.DBus";
constexpr const char* busPath = "/org/freedesktop/DBus";
constexpr const char* logindService = "org.freedesktop.login1";
constexpr const char* logindSessionInterface = "org.freedesktop.login1.Session";

std::string quoted(std::string_view value) {
    return "'" + std::string(value) + "'";
}

/// Reads a PropertiesChanged signal's changed values for a boolean `name`; absent when the
/// signal does not carry it as a boolean.
std::optional<bool> changedBoolean(sd_bus_message* message, const char* name) {
    std::optional<bool> value;
    if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0) {
        return std::nullopt;
    }
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
        const char* key = nullptr;
        if (sd_bus_message_read(message, "s", &key) < 0) {
            return std::nullopt;
        }
        char type = 0;
        const char* contents = nullptr;
        int flag = 0;
        if (std::strcmp(key, name) == 0 &&
            sd_bus_message_peek_type(message, &type, &contents) > 0 && contents != nullptr &&
            std::strcmp(contents, "b") == 0) {
            if (sd_bus_message_read(message, "v", "b", &flag) < 0) {
                return std::nullopt;
            }
            value = flag != 0;
        } else if (sd_bus_message_skip(message, "v") < 0) {
            return std::nullopt;
        }
        if (sd_bus_message_exit_container(message) < 0) {
            return std::nullopt;
        }
    }
    return value;
}

sd_bus* openBus(const BusAddress& address) {
    sd_bus* bus = nullptr;
    int result = -1;
    switch (address.kind) {
        case BusAddress::Kind::none: return nullptr;
        case BusAddress::Kind::userSession: result = sd_bus_open_user(&bus); break;
        case BusAddress::Kind::system: result = sd_bus_open_system(&bus); break;
        case BusAddress::Kind::address:
            result = sd_bus_new(&bus);
            if (result >= 0) {
                result = sd_bus_set_address(bus, address.address.c_str());
            }
            if (result >= 0) {
                result = sd_bus_set_bus_client(bus, 1);
            }
            if (result >= 0) {
                result = sd_bus_start(bus);
            }
            break;
    }
    if (result < 0) {
        sd_bus_unref(bus);
        return nullptr;
    }
    return bus;
}

}  // namespace

// One connection, the names whose owners it follows and the match rules it holds. Signals are
// believed only from a name's current owner: the daemon routes by sender, but anyone may send
// a signal to us directly.
struct SessionDisplayState::Bus {
    struct Name {
        Bus* bus;
        std::string name;
        std::string owner;  ///< The owner's unique name; empty while nobody owns the name.
    };

    Bus(sd_bus* bus, std::function<void(DisplayEvent)> report)
        : bus(bus), report(std::move(report)) {}

    ~Bus() {
        for (sd_bus_slot* slot : slots) {
            sd_bus_slot_unref(slot);
        }
        // Closing without a flush: a stopping agent does not wait on a stuck daemon.
        sd_bus_close_unref(bus);
    }

    Bus(const Bus&) = delete;
    Bus& operator=(const Bus&) = delete;

    /// Follows the owner of `name`: the current one asked now, later ones from the daemon's
    /// NameOwnerChanged. Null when the bus refused the match rule.
    Name* follow(const char* name) {
        auto& followed = *names.emplace_back(std::make_unique<Name>(Name{this, name, {}}));
        const std::string rule = "type='signal',sender='org.freedesktop.DBus',path='" +
                                 std::string(busPath) +
                                 "',interface='org.freedesktop.DBus',member='NameOwnerChanged',"
                                 "arg0=" +
                                 quoted(name);
        if (!addMatch(rule, &ownerChanged, &followed)) {
            return nullptr;
        }
        // Zeroed, as SD_BUS_ERROR_NULL would, which is a C compound literal.
        sd_bus_error error{};
        sd_bus_message* reply = nullptr;
        // Answered by the daemon itself, so this waits on nothing a slow service can hold up.
        if (sd_bus_call_method(bus, busService, busPath, busService, "GetNameOwner", &error, &reply,
                               "s", name) >= 0) {
            const char* owner = nullptr;
            if (sd_bus_message_read(reply, "s", &owner) >= 0) {
                followed.owner = owner;
            }
        }
        sd_bus_error_free(&error);
        sd_bus_message_unref(reply);
        return &followed;
    }

    bool addMatch(const std::string& rule, sd_bus_message_handler_t handler, void* data) {
        sd_bus_slot* slot = nullptr;
        if (sd_bus_add_match(bus, &slot, rule.c_str(), handler, data) < 0) {
            return false;
        }
        slots.push_back(slot);
        return true;
    }

    static bool isFromOwner(sd_bus_message* message, const Name& name) {
        const char* sender = sd_bus_message_get_sender(message);
        return sender != nullptr && !name.owner.empty() && name.owner == sender;
    }

    static int ownerChanged(sd_bus_message* message, void* data, sd_bus_error*) {
        auto& name = *static_cast<Name*>(data);
        const char* changed = nullptr;
        const char* previous = nullptr;
        const char* current = nullptr;
        if (sd_bus_message_read(message, "sss", &changed, &previous, &current) >= 0 &&
            name.name == changed) {
            name.owner = current;
        }
        return 0;
    }

    static int screensaverActiveChanged(sd_bus_message* message, void* data, sd_bus_error*) {
        auto& name = *static_cast<Name*>(data);
        int active = 0;
        if (isFromOwner(message, name) && sd_bus_message_read(message, "b", &active) >= 0) {
            name.bus->report(active != 0 ? DisplayEvent::screensDidSleep
                                         : DisplayEvent::screensDidWake);
        }
        return 0;
    }

    // "auto" is the caller's session, or the user's display session for a process started
    // outside one (a systemd user service), which is the session whose switches matter here.
    // Asked asynchronously so that a slow or absent logind never holds up the start.
    bool findLogindSession() {
        logind = follow(logindService);
        if (logind == nullptr) {
            return false;
        }
        sd_bus_slot* slot = nullptr;
        if (sd_bus_call_method_async(bus, &slot, logindService, "/org/freedesktop/login1",
                                     "org.freedesktop.login1.Manager", "GetSession", &sessionFound,
                                     this, "s", "auto") >= 0) {
            slots.push_back(slot);
        }
        return true;
    }

    static int sessionFound(sd_bus_message* reply, void* data, sd_bus_error*) {
        auto& self = *static_cast<Bus*>(data);
        const char* path = nullptr;
        if (sd_bus_message_is_method_error(reply, nullptr) ||
            sd_bus_message_read(reply, "o", &path) < 0) {
            return 0;
        }
        const std::string rule =
            "type='signal',sender='org.freedesktop.login1',path=" + quoted(path) +
            ",interface='org.freedesktop.DBus.Properties',member='PropertiesChanged',arg0=" +
            quoted(logindSessionInterface);
        sd_bus_slot* slot = nullptr;
        if (sd_bus_add_match_async(self.bus, &slot, rule.c_str(), &sessionPropertiesChanged,
                                   nullptr, self.logind) >= 0) {
            self.slots.push_back(slot);
        }
        return 0;
    }

    static int sessionPropertiesChanged(sd_bus_message* message, void* data, sd_bus_error*) {
        auto& logind = *static_cast<Name*>(data);
        const char* interface = nullptr;
        if (!isFromOwner(message, logind) || sd_bus_message_read(message, "s", &interface) < 0 ||
            std::strcmp(interface, logindSessionInterface) != 0) {
            return 0;
        }
        // logind sends Active with its value (it "emits change"), never as invalidated only.
        if (const auto active = changedBoolean(message, "Active")) {
            logind.bus->report(*active ? DisplayEvent::sessionDidBecomeActive
                                       : DisplayEvent::sessionDidResignActive);
        }
        return 0;
    }

    sd_bus* bus;
    std::function<void(DisplayEvent)> report;
    std::vector<std::unique_ptr<Name>> names;
    std::vector<sd_bus_slot*> slots;
    Name* logind = nullptr;
};

SessionDisplayState::SessionDisplayState(BusAddress sessionBus, BusAddress systemBus) {
    const auto report = [this](DisplayEvent event) { pending.push_back(event); };
    if (sd_bus* connection = openBus(sessionBus)) {
        auto bus = std::make_unique<Bus>(connection, report);
        bool watching = true;
        for (const auto& service : screensaverServices) {
            Bus::Name* name = bus->follow(service.name);
            // No path: KDE sends from /ScreenSaver as well as /org/freedesktop/ScreenSaver.
            watching =
                name != nullptr && bus->addMatch("type='signal',sender=" + quoted(service.name) +
                                                     ",interface=" + quoted(service.interface) +
                                                     ",member='ActiveChanged'",
                                                 &Bus::screensaverActiveChanged, name);
            if (!watching) {
                break;
            }
        }
        if (watching) {
            buses.push_back(std::move(bus));
        }
    }
    if (sd_bus* connection = openBus(systemBus)) {
        auto bus = std::make_unique<Bus>(connection, report);
        if (bus->findLogindSession()) {
            buses.push_back(std::move(bus));
        }
    }
}

SessionDisplayState::~SessionDisplayState() = default;

Subscription SessionDisplayState::observe(std::function<void(DisplayEvent)> handler) {
    return observers.add(std::move(handler));
}

std::vector<int> SessionDisplayState::descriptors() const {
    std::vector<int> result;
    for (const auto& bus : buses) {
        const int descriptor = sd_bus_get_fd(bus->bus);
        if (descriptor >= 0) {
            result.push_back(descriptor);
        }
    }
    return result;
}

void SessionDisplayState::dispatch() {
    for (auto bus = buses.begin(); bus != buses.end();) {
        int result = 0;
        do {
            result = sd_bus_process((*bus)->bus, nullptr);
        } while (result > 0);
        // A closed connection stays readable; polling it on would spin.
        if (result < 0 || sd_bus_is_open((*bus)->bus) <= 0) {
            bus = buses.erase(bus);
        } else {
            ++bus;
        }
    }
    // Told only after the buses are done with, since an observer may destroy this.
    const std::weak_ptr<char> alive = lifetime;
    for (const DisplayEvent event : std::exchange(pending, {})) {
        if (alive.expired()) {
            return;
        }
        observers.notify(event);
    }
}

}  // namespace corvane
