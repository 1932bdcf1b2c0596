#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

#include <optional>
#include <string_view>

class QWidget;

namespace corvane {

/// The two colour schemes a panel is drawn in.
enum class PopoverScheme { light, dark };

/// Every colour the panels use, for one scheme.
struct PopoverColors {
    /// Header icon, section titles, sensor symbols.
    QColor accent;
    /// The "opaque" surface.
    QColor opaqueSurface;
    /// The empty part of a bar, and the available share of memory.
    QColor track;
    QColor defaultFill;
    QColor primaryText;
    /// Row titles and captions: dimmed.
    QColor secondaryText;
    QColor divider;
    QColor cyan;
    QColor red;
    QColor purple;
    QColor gray;
    QColor green;
    QColor orange;
};

/// A colour named by its role, so that it follows a change of scheme.
enum class PopoverHue {
    primary,
    secondary,
    accent,
    cyan,
    red,
    purple,
    gray,
    green,
    orange,
    track,
    defaultFill
};

/// The colour of `hue` among `colors`.
QColor colorOf(const PopoverColors& colors, PopoverHue hue);

/// The colours of `scheme`.
const PopoverColors& popoverColors(PopoverScheme scheme);

/// "light" and "dark" force a scheme (exact, case-sensitive); anything else follows the desktop.
std::optional<PopoverScheme> preferredScheme(std::string_view popoverAppearance);

/// The palette a panel of `scheme` hands down to its parts: its window colour tells the parts
/// which scheme they are in (see `schemeOf`), so one palette change re-colours the whole panel.
QPalette popoverPalette(PopoverScheme scheme);
/// The scheme of the panel `widget` sits in.
PopoverScheme schemeOf(const QWidget& widget);
/// The colours of the panel `widget` sits in.
const PopoverColors& colorsOf(const QWidget& widget);

/// `base` at `pixelSize` and `weight`. The panel's geometry is in points that are
/// device-independent pixels, so its type is sized in pixels too.
QFont popoverFont(const QFont& base, int pixelSize, QFont::Weight weight = QFont::Normal);

}  // namespace corvane
