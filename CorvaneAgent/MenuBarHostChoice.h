#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace corvane {

/// Which menu bar `--menu-bar` asks for.
enum class MenuBarHostRequest { automatic, tray, strip };

/// The menu bar the agent runs with.
enum class MenuBarHostKind { tray, strip };

/// What the session offers a menu bar.
struct MenuBarEnvironment {
    bool sessionBus = false;
    /// org.kde.StatusNotifierWatcher has an owner on the session bus.
    bool statusNotifierWatcher = false;
    /// The program runs on X11 (Qt's xcb platform).
    bool x11 = false;
};

/// Why no menu bar can be shown, in one line.
struct MenuBarHostRefusal {
    std::string message;
};

/// The request parsed from its command-line spelling ("tray", "strip", "auto").
std::optional<MenuBarHostRequest> menuBarHostRequestFromName(std::string_view name);

/// The host to run: automatic takes the tray when a watcher is on the bus, else the strip on
/// X11. A tray asked for by name only needs the bus, since a watcher may start later.
std::variant<MenuBarHostKind, MenuBarHostRefusal> chooseMenuBarHost(
    MenuBarHostRequest request, const MenuBarEnvironment& environment);

}  // namespace corvane
