#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "CorvaneAgent/PanelMetrics.h"
#include "CorvaneShared/MonitorSection.h"
#include "Foundation/Subscription.h"
#include "Platform/MenuBarHost.h"

namespace corvane {

/// The window a section's detail panel is shown in, hanging below its menu-bar item. The
/// status bar controller decides when it opens and closes; the window only does as told.
/// Main thread only.
class Popover {
public:
    virtual ~Popover() = default;

    /// Whether the panel content exists (it is built on opening and dropped on closing).
    virtual bool hasContent() const = 0;
    /// Builds the section's panel afresh with `metrics`, scrolling in `scrollHeight` points
    /// when given, replacing any content it had.
    virtual void setContent(const PanelMetrics& metrics, std::optional<double> scrollHeight) = 0;
    /// Drops the panel content (the window must be closed).
    virtual void removeContent() = 0;
    /// The height the current content needs at the panel width of 300 points.
    virtual double fittingHeight() const = 0;

    /// Shows the window below `anchor` (the item's frame on the desktop), kept on the anchor's
    /// screen, above other windows and on every workspace.
    virtual void show(const ScreenRect& anchor) = 0;
    /// Closes the window if it is shown; the did-close notification follows.
    virtual void close() = 0;
    virtual bool isShown() const = 0;
    /// The window's frame on the desktop while shown.
    virtual std::optional<ScreenRect> windowFrame() const = 0;
    /// Re-renders the open panel (the appearance settings changed).
    virtual void refreshAppearance() = 0;

    /// Runs after the window closed, whoever closed it (Escape, the panel's own close action, the
    /// controller).
    virtual Subscription observeDidClose(std::function<void()> handler) = 0;
};

/// Creates the four popovers, once each. The popover's panel calls `close` for its own close
/// action and the footer's buttons; `close` holds the controller weakly.
using PopoverFactory =
    std::function<std::unique_ptr<Popover>(MonitorSection section, std::function<void()> close)>;

}  // namespace corvane
