#pragma once

#include <QImage>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/MenuBarHost.h"

namespace corvane {

/// The "NSStatusItem Preferred Position" recorded for an autosave name, absent when none is.
using PreferredPositionLookup =
    std::function<std::optional<double>(const std::string& autosaveName)>;

/// The two commands every host offers on an item's menu, with their translated labels.
struct MenuBarHostMenu {
    std::string settingsLabel;
    std::string quitLabel;
    std::function<void()> openSettings;
    std::function<void()> quit;
};

/// A host, or why none could be made (one line).
struct MenuBarHostCreation {
    std::unique_ptr<MenuBarHost> host;
    std::string failure;
};

/// The image as Qt sees it: premultiplied ARGB32 with its device pixel ratio; null when the
/// image is empty or its pixel count does not match its size.
QImage qImageFromItemImage(const ItemImage& image);

}  // namespace corvane

namespace corvane {

/// Sets QT_QPA_PLATFORM to xcb when DISPLAY is set and the variable is not, so that panels
/// can be placed at screen coordinates, which Wayland does not allow (XWayland does). Call
/// at the program's entry, before the QApplication exists.
void preferX11WhenDisplayIsSet();

/// Whether the session bus is reachable. Needs a QCoreApplication.
bool hasSessionBus();

/// Whether org.kde.StatusNotifierWatcher has an owner on the session bus (a tray is running).
bool hasStatusNotifierWatcher();

/// Whether the application runs on Qt's xcb platform (X11, or XWayland).
bool isX11Platform();

}  // namespace corvane
