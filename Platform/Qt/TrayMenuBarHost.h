#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Foundation/ObserverList.h"
#include "Platform/MenuBarHost.h"
#include "Platform/Qt/DesktopEvents.h"
#include "Platform/Qt/MenuBarHostSupport.h"

namespace corvane {

/// The menu bar as a StatusNotifierItem tray (KDE Plasma, GNOME's AppIndicator extension,
/// Xfce, waybar and the others): each item is its own StatusNotifierItem on the session bus,
/// under the name org.kde.StatusNotifierItem-<pid>-<n> on a connection of its own, with a
/// com.canonical.dbusmenu menu at /MenuBar. Items added in one turn of the event loop are
/// registered with org.kde.StatusNotifierWatcher on the next turn, one after the other, in
/// decreasing preferred position, so trays that keep registration order show them left to
/// right; all are registered again whenever a watcher appears. A tray owns its own layout, so
/// item windows never move and `observeItemMoved` never fires. Main thread only, inside a
/// QApplication's lifetime.
class TrayMenuBarHost final : public MenuBarHost {
public:
    /// A tray host, or why there is none: without a session bus there is nothing to join.
    /// A missing watcher is not a failure: the items register when one appears.
    static MenuBarHostCreation create(PreferredPositionLookup preferredPosition,
                                      MenuBarHostMenu menu);
    ~TrayMenuBarHost() override;

    std::unique_ptr<MenuBarItem> addItem(double length, const std::string& autosaveName) override;
    void removeItem(MenuBarItem& item) override;
    std::optional<ScreenRect> primaryScreenVisibleFrame() const override;
    PointerState pointerState() const override;
    Subscription observeItemMoved(std::function<void(MenuBarItem&)> handler) override;
    Subscription observeScreensChanged(std::function<void()> handler) override;
    Subscription observeWorkspaceChanged(std::function<void()> handler) override;
    Subscription observePointerPresses(
        std::function<void(ScreenPoint location, bool onItem)> handler) override;

    class Registry;

private:
    TrayMenuBarHost(PreferredPositionLookup preferredPosition, MenuBarHostMenu menu);

    std::shared_ptr<Registry> registry;
    DesktopEvents events;
    ObserverList<MenuBarItem&> itemMoved;
};

/// The frame a tray item is given when clicked at `point`: as wide as the item and centred on
/// the point; reaching from the screen's edge to its work area when the point lies in a panel
/// outside the work area (so a panel window hangs just clear of it), else a bar's height
/// around the point.
ScreenRect trayActivationFrame(ScreenPoint point, double length, const ScreenRect& screen,
                               const ScreenRect& workArea);

}  // namespace corvane
