#pragma once

#include <QString>
#include <QWidget>

#include <functional>
#include <optional>
#include <string>

#include "CorvaneShared/UI/PopoverColors.h"

namespace corvane {

class PopoverSurface;

/// What the footer's buttons do. Each may be empty.
struct PopoverActions {
    /// Closes the popover showing the panel.
    std::function<void()> requestClose;
    /// Opens the companion's settings; called after `requestClose`.
    std::function<void()> openSettings;
    /// Ends the agent.
    std::function<void()> quit;
};

/// Where the panel's look comes from; each is read afresh by `applyAppearance`.
struct PopoverLook {
    /// The "popoverAppearance" setting.
    std::function<std::string()> appearance;
    /// The "popoverBackground" setting.
    std::function<std::string()> background;
    /// The desktop's preference when the setting does not force a scheme.
    std::function<bool()> desktopPrefersDark;
    /// Whether translucent windows are blended (see desktopCompositorRunning).
    std::function<bool()> compositorRunning;
};

/// The texts of the frame, already translated.
struct PopoverTexts {
    QString title;
    std::string icon;
    QString settings;
    QString quit;
};

/// A detail panel's frame, exactly 300 points wide in 10-point type: the header, a divider, the
/// section's panel (in a scrolling region of the given height when one is given), a divider,
/// and the footer with "Settings" and "Quit". Its height for the width of 300 is the panel's
/// natural height. Main thread only.
class MonitorPopover final : public QWidget {
public:
    static constexpr int panelWidth = 300;

    /// Takes over `panel`.
    MonitorPopover(const PopoverTexts& texts, QWidget* panel, std::optional<double> scrollHeight,
                   const PopoverActions& actions, PopoverLook look, QWidget* parent = nullptr);

    /// Re-reads the appearance and background settings and the desktop's preference and
    /// re-colours the open panel at once; call it when a setting changed.
    void applyAppearance();
    PopoverScheme scheme() const { return currentScheme; }
    /// Whether the window holding the panel should be translucent.
    bool wantsTranslucentWindow() const;

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;

private:
    PopoverLook look;
    PopoverSurface* surface;
    PopoverScheme currentScheme = PopoverScheme::dark;
};

}  // namespace corvane
