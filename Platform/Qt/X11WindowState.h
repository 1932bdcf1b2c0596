#pragma once

class QWindow;

namespace corvane {

/// Asks an X11 window manager (EWMH) to keep `window` above other windows, on every workspace,
/// and out of the taskbar and the pager: what Qt's window flags cannot say. Call it while the
/// window is hidden, before each show, because managers drop these states when a window is
/// withdrawn. Creates the native window if needed. Does nothing on other platforms. Main
/// thread only.
void keepAboveOnEveryWorkspace(QWindow& window);

}  // namespace corvane
