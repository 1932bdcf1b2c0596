#pragma once

#include <QWidget>

#include <string>

namespace corvane {

/// The panel's background. "opaque" is a solid fill in the scheme's surface colour; anything
/// else is the translucent material: see-through where a compositor blends the window with
/// what is behind it, else (nothing would blend, the see-through part would come out black) a
/// near-opaque fill of the material's own colour. Both carry a 7 % black veil. Main thread only.
class PopoverSurface final : public QWidget {
public:
    explicit PopoverSurface(QWidget* parent = nullptr);

    /// The "popoverBackground" setting in force; repaints when it changes.
    void setBackground(const std::string& popoverBackground);
    /// Whether the desktop blends translucent windows (see desktopCompositorRunning).
    void setCompositorRunning(bool running);
    /// Whether the window holding the surface should be translucent.
    bool isTranslucent() const { return !opaque && compositor; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool opaque = false;
    bool compositor = false;
};

}  // namespace corvane
