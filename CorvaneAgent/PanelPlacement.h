#pragma once

#include <vector>

#include "Platform/MenuBarHost.h"

namespace corvane {

/// One screen as the placement of a panel sees it.
struct ScreenArea {
    /// The whole screen.
    ScreenRect frame;
    /// The part not taken by panels and docks (the work area).
    ScreenRect visibleFrame;
};

/// The top-left corner of a panel of `width` by `height` hanging from `anchor` (a menu-bar
/// item): centred under it, on the screen whose frame holds the anchor's centre (else the
/// nearest screen), and kept inside that screen's visible frame. Where there is no room
/// below, it goes above the anchor when that fits, else as low as the screen allows. Without
/// screens it hangs below the anchor as it is.
ScreenPoint panelOrigin(const ScreenRect& anchor, const std::vector<ScreenArea>& screens,
                        double width, double height);

}  // namespace corvane
