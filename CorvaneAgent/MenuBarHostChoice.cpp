#include "CorvaneAgent/MenuBarHostChoice.h"

namespace corvane {

std::optional<MenuBarHostRequest> menuBarHostRequestFromName(std::string_view name) {
    if (name == "auto") {
        return MenuBarHostRequest::automatic;
    }
    if (name == "tray") {
        return MenuBarHostRequest::tray;
    }
    if (name == "strip") {
        return MenuBarHostRequest::strip;
    }
    return std::nullopt;
}

std::variant<MenuBarHostKind, MenuBarHostRefusal> chooseMenuBarHost(
    MenuBarHostRequest request, const MenuBarEnvironment& environment) {
    switch (request) {
        case MenuBarHostRequest::tray:
            if (!environment.sessionBus) {
                return MenuBarHostRefusal{"the tray needs a D-Bus session bus, and there is none"};
            }
            return MenuBarHostKind::tray;
        case MenuBarHostRequest::strip:
            if (!environment.x11) {
                return MenuBarHostRefusal{
                    "the strip needs an X11 display (is DISPLAY set?), and there is none"};
            }
            return MenuBarHostKind::strip;
        case MenuBarHostRequest::automatic: break;
    }
    if (environment.sessionBus && environment.statusNotifierWatcher) {
        return MenuBarHostKind::tray;
    }
    if (environment.x11) {
        return MenuBarHostKind::strip;
    }
    return MenuBarHostRefusal{
        std::string("no menu bar to show the meters in: no StatusNotifierWatcher (tray) on ") +
        (environment.sessionBus ? "the session bus" : "a session bus, as there is none") +
        " and no X11 display for Corvane's own strip (DISPLAY is not set)"};
}

}  // namespace corvane
