#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Foundation/Subscription.h"

namespace corvane {

/// A point on the desktop in device-independent pixels, origin at the top-left of the virtual
/// screen, y growing downwards (X11's convention, not the Mac's).
struct ScreenPoint {
    double x = 0;
    double y = 0;
    bool operator==(const ScreenPoint&) const = default;
};

/// A rectangle on the desktop, in the coordinates of `ScreenPoint`.
struct ScreenRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool contains(ScreenPoint point) const {
        return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
    }
    bool operator==(const ScreenRect&) const = default;
};

/// A picture of an item: premultiplied ARGB32 pixels, row by row, drawn for `devicePixelRatio`
/// device pixels per point. Kept free of any toolkit so that the menu-bar logic can hand the
/// host what to show.
struct ItemImage {
    int pixelWidth = 0;
    int pixelHeight = 0;
    double devicePixelRatio = 1;
    std::vector<std::uint32_t> pixels;
};

/// One item in the menu bar: a button of a given length that shows an image and reports
/// clicks. Created and destroyed by `MenuBarHost`; main thread only.
class MenuBarItem {
public:
    virtual ~MenuBarItem() = default;

    /// The name its position and visibility are recorded under.
    virtual const std::string& autosaveName() const = 0;
    /// The item's width in points (its height is the bar's).
    virtual void setLength(double points) = 0;
    virtual double length() const = 0;
    /// The label screen readers announce, and the tooltip title where the host has one.
    virtual void setAccessibilityLabel(const std::string& label) = 0;
    /// A line under the title in hosts that show a tooltip (the meter's readout).
    virtual void setToolTip(const std::string& text) = 0;
    /// What the item shows: called by the host whenever it needs a picture at a given device
    /// pixel ratio and height in points (a tray may ask for several sizes).
    virtual void setDrawing(
        std::function<ItemImage(double devicePixelRatio, double height)> draw) = 0;
    /// Asks the host to draw the item again soon (through the drawing above).
    virtual void setNeedsDisplay() = 0;
    /// Run on a left click on the item (the button's action).
    virtual void setAction(std::function<void()> action) = 0;

    /// Whether the item has a button at all (a host may fail to create one).
    virtual bool hasButton() const = 0;
    /// The frame of the button's window on the desktop; absent when it has no window (yet).
    virtual std::optional<ScreenRect> windowFrame() const = 0;
    /// Whether the button's window is mapped and not covered, so a panel may hang from it.
    virtual bool isWindowVisible() const = 0;
    /// The usable area (work area) of the screen the button's window is on; absent when the
    /// window has no screen.
    virtual std::optional<ScreenRect> screenVisibleFrame() const = 0;
};

/// Which pointer buttons and modifier keys are held at this moment.
struct PointerState {
    /// The reorder modifier (Ctrl on Linux) is held.
    bool reorderModifier = false;
    /// Any mouse button is pressed.
    bool anyButton = false;
};

/// The desktop's menu bar, as the status bar controller sees it: a tray of status-notifier
/// items, Corvane's own strip, or a fake in tests. Main thread only; every notification
/// arrives on the main thread.
class MenuBarHost {
public:
    virtual ~MenuBarHost() = default;

    /// Adds an item of `length` points under `autosaveName`. The host places it by the
    /// "NSStatusItem Preferred Position <autosaveName>" record in the agent's own store where
    /// it can (larger further left); items installed later go left of earlier ones otherwise.
    virtual std::unique_ptr<MenuBarItem> addItem(double length,
                                                 const std::string& autosaveName) = 0;
    /// Removes the item from the bar; the object is destroyed by the caller right after.
    virtual void removeItem(MenuBarItem& item) = 0;

    /// The usable area of the primary screen; absent when there is no screen.
    virtual std::optional<ScreenRect> primaryScreenVisibleFrame() const = 0;
    /// The pointer buttons and modifiers held now.
    virtual PointerState pointerState() const = 0;

    /// An item's window moved (`item` is one of this host's items).
    virtual Subscription observeItemMoved(std::function<void(MenuBarItem& item)> handler) = 0;
    /// Screens were added, removed or changed size or work area.
    virtual Subscription observeScreensChanged(std::function<void()> handler) = 0;
    /// The current workspace (virtual desktop) changed.
    virtual Subscription observeWorkspaceChanged(std::function<void()> handler) = 0;
    /// A left or right button was pressed anywhere on the desktop, in this program or another;
    /// `onItem` tells whether the press was on one of this host's item windows.
    virtual Subscription observePointerPresses(
        std::function<void(ScreenPoint location, bool onItem)> handler) = 0;
};

}  // namespace corvane
