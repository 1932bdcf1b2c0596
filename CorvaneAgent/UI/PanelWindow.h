#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <optional>

#include "CorvaneAgent/Popover.h"
#include "Foundation/ObserverList.h"

class QWidget;

namespace corvane {

class PanelFrame;

/// A section's detail panel in a frameless window of 300 points' width that hangs below its
/// menu-bar item, above other windows and on every workspace, outside the taskbar and pager.
/// Not a Qt popup: a popup grabs the pointer, and the click on another menu-bar item would
/// never reach that item. Main thread only.
class PanelWindow final : public Popover {
public:
    /// Builds the panel content for the given metrics, scrolling in `scrollHeight` points when
    /// given. The window owns what it returns.
    using ContentFactory =
        std::function<QWidget*(const PanelMetrics& metrics, std::optional<double> scrollHeight)>;

    /// `title`: the section's title, already localised ("CPU", "Memory", "SSD", "Sensors").
    PanelWindow(const QString& title, ContentFactory makeContent);
    ~PanelWindow() override;
    PanelWindow(const PanelWindow&) = delete;
    PanelWindow& operator=(const PanelWindow&) = delete;

    bool hasContent() const override;
    void setContent(const PanelMetrics& metrics, std::optional<double> scrollHeight) override;
    void removeContent() override;
    /// The content's height for the width of 300 points (its size hint without
    /// height-for-width); 0 without content.
    double fittingHeight() const override;

    void show(const ScreenRect& anchor) override;
    void close() override;
    bool isShown() const override;
    std::optional<ScreenRect> windowFrame() const override;
    /// Builds the content again with the same metrics, and keeps an open window in place.
    void refreshAppearance() override;

    Subscription observeDidClose(std::function<void()> handler) override;

    /// The top-level window, for tests and for telling clicks inside it.
    QWidget& window();

private:
    void placeBelow(const ScreenRect& anchor);
    void didClose();

    ContentFactory makeContent;
    /// Deleted later rather than at once, since a did-close handler may destroy this object
    /// from inside the window's own close event.
    std::unique_ptr<PanelFrame, void (*)(PanelFrame*)> frame;
    QWidget* content = nullptr;
    PanelMetrics contentMetrics;
    std::optional<double> contentScrollHeight;
    std::optional<ScreenRect> lastAnchor;
    ObserverList<> didCloseObservers;
};

}  // namespace corvane
