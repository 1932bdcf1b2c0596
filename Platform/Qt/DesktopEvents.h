#pragma once

#include <functional>
#include <memory>

#include "Foundation/ObserverList.h"
#include "Platform/MenuBarHost.h"

namespace corvane {

/// What both menu-bar hosts watch on the desktop: left and right button presses anywhere,
/// screens coming, going or changing size or work area, and the current workspace changing.
/// On X11 presses come from XInput2 raw events on the root window, so presses in other programs
/// are seen too, and the workspace from the root window's _NET_CURRENT_DESKTOP; on any other
/// platform only presses in this program are seen and workspace changes are not. Create after
/// the QGuiApplication and use on the main thread; every notification is posted to the main
/// thread's next turn, never made from inside the event that caused it.
class DesktopEvents {
public:
    DesktopEvents();
    ~DesktopEvents();

    DesktopEvents(const DesktopEvents&) = delete;
    DesktopEvents& operator=(const DesktopEvents&) = delete;

    /// `handler` gets the pointer position at the time the press is handled.
    Subscription observePointerPresses(std::function<void(ScreenPoint location)> handler);
    Subscription observeScreensChanged(std::function<void()> handler);
    Subscription observeWorkspaceChanged(std::function<void()> handler);

    /// Whether presses in other programs reach `observePointerPresses` (X11 with XInput2).
    bool seesPressesEverywhere() const;

private:
    class Listener;

    ObserverList<ScreenPoint> presses;
    ObserverList<> screens;
    ObserverList<> workspace;
    std::unique_ptr<Listener> listener;
};

/// Where the pointer is now, in the desktop's coordinates.
ScreenPoint currentPointerLocation();

/// Which of the reorder modifier (Ctrl) and the mouse buttons are held now, asking the window
/// system rather than trusting the last event seen.
PointerState currentPointerState();

}  // namespace corvane
