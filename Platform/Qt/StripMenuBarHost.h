#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Foundation/ObserverList.h"
#include "Platform/MenuBarHost.h"
#include "Platform/Qt/DesktopEvents.h"
#include "Platform/Qt/MenuBarHostSupport.h"

namespace corvane {

/// The menu bar as Corvane's own strip, for X11 sessions without a tray: a dock window titled
/// "Corvane" along the top of the primary screen's work area, 24 points high, reserving its
/// height (_NET_WM_STRUT_PARTIAL). Items are child widgets laid out right-aligned, the last
/// 8 points from the screen's right edge and 4 points apart, left to right in decreasing
/// preferred position (an item without one goes left of the others). Ctrl-dragging an item
/// moves it and reports each step through `observeItemMoved`; on release the items settle into
/// the order they now show. A left click runs the item's action, a right click offers the
/// host's menu. Main thread only, inside a QApplication's lifetime.
class StripMenuBarHost final : public MenuBarHost {
public:
    /// The strip, or why there is none: it needs Qt's xcb platform (an X11 display).
    static MenuBarHostCreation create(PreferredPositionLookup preferredPosition,
                                      MenuBarHostMenu menu);
    ~StripMenuBarHost() override;

    std::unique_ptr<MenuBarItem> addItem(double length, const std::string& autosaveName) override;
    void removeItem(MenuBarItem& item) override;
    std::optional<ScreenRect> primaryScreenVisibleFrame() const override;
    PointerState pointerState() const override;
    Subscription observeItemMoved(std::function<void(MenuBarItem&)> handler) override;
    Subscription observeScreensChanged(std::function<void()> handler) override;
    Subscription observeWorkspaceChanged(std::function<void()> handler) override;
    Subscription observePointerPresses(
        std::function<void(ScreenPoint location, bool onItem)> handler) override;

    class Bar;

private:
    StripMenuBarHost(PreferredPositionLookup preferredPosition, MenuBarHostMenu menu);

    ObserverList<MenuBarItem&> itemMoved;
    std::unique_ptr<Bar> bar;
    DesktopEvents events;
    Subscription screensSubscription;
};

}  // namespace corvane
