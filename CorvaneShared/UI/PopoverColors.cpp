#include "CorvaneShared/UI/PopoverColors.h"

#include <QWidget>

namespace corvane {

namespace {

QColor rgb(double red, double green, double blue, double alpha = 1) {
    return QColor::fromRgbF(static_cast<float>(red), static_cast<float>(green),
                            static_cast<float>(blue), static_cast<float>(alpha));
}

QColor rgb255(int red, int green, int blue) {
    return QColor(red, green, blue);
}

}  // namespace

const PopoverColors& popoverColors(PopoverScheme scheme) {
    // The system hues of the two schemes: the dark ones are a little lighter, so that they keep
    // their contrast on the dark surface.
    static const PopoverColors dark{
        .accent = rgb(0.39, 0.70, 1.00),
        .opaqueSurface = rgb(0.12, 0.13, 0.14),
        .track = rgb(0, 0, 0, 0.3),
        .defaultFill = rgb(0.25, 0.62, 0.96),
        .primaryText = rgb(1, 1, 1, 0.88),
        .secondaryText = rgb(1, 1, 1, 0.55),
        .divider = rgb(1, 1, 1, 0.12),
        .cyan = rgb255(100, 210, 255),
        .red = rgb255(255, 69, 58),
        .purple = rgb255(191, 90, 242),
        .gray = rgb255(152, 152, 157),
        .green = rgb255(48, 209, 88),
        .orange = rgb255(255, 159, 10),
    };
    static const PopoverColors light{
        .accent = rgb(0.05, 0.38, 0.72),
        .opaqueSurface = rgb(0.78, 0.80, 0.82),
        .track = rgb(0.45, 0.46, 0.48, 0.45),
        .defaultFill = rgb(0.12, 0.52, 0.88),
        .primaryText = rgb(0, 0, 0, 0.85),
        .secondaryText = rgb(0, 0, 0, 0.55),
        .divider = rgb(0, 0, 0, 0.12),
        .cyan = rgb255(50, 173, 230),
        .red = rgb255(255, 59, 48),
        .purple = rgb255(175, 82, 222),
        .gray = rgb255(142, 142, 147),
        .green = rgb255(52, 199, 89),
        .orange = rgb255(255, 149, 0),
    };
    return scheme == PopoverScheme::dark ? dark : light;
}

QColor colorOf(const PopoverColors& colors, PopoverHue hue) {
    switch (hue) {
        case PopoverHue::primary: return colors.primaryText;
        case PopoverHue::secondary: return colors.secondaryText;
        case PopoverHue::accent: return colors.accent;
        case PopoverHue::cyan: return colors.cyan;
        case PopoverHue::red: return colors.red;
        case PopoverHue::purple: return colors.purple;
        case PopoverHue::gray: return colors.gray;
        case PopoverHue::green: return colors.green;
        case PopoverHue::orange: return colors.orange;
        case PopoverHue::track: return colors.track;
        case PopoverHue::defaultFill: return colors.defaultFill;
    }
    return colors.primaryText;
}

std::optional<PopoverScheme> preferredScheme(std::string_view popoverAppearance) {
    if (popoverAppearance == "light") {
        return PopoverScheme::light;
    }
    if (popoverAppearance == "dark") {
        return PopoverScheme::dark;
    }
    return std::nullopt;
}

QPalette popoverPalette(PopoverScheme scheme) {
    const PopoverColors& colors = popoverColors(scheme);
    QPalette palette;
    palette.setColor(QPalette::Window, colors.opaqueSurface);
    palette.setColor(QPalette::Base, colors.opaqueSurface);
    palette.setColor(QPalette::WindowText, colors.primaryText);
    palette.setColor(QPalette::Text, colors.primaryText);
    palette.setColor(QPalette::ButtonText, colors.primaryText);
    palette.setColor(QPalette::Button, colors.opaqueSurface);
    palette.setColor(QPalette::PlaceholderText, colors.secondaryText);
    palette.setColor(QPalette::Highlight, colors.accent);
    return palette;
}

PopoverScheme schemeOf(const QWidget& widget) {
    return widget.palette().color(QPalette::Window).lightness() < 128 ? PopoverScheme::dark
                                                                      : PopoverScheme::light;
}

const PopoverColors& colorsOf(const QWidget& widget) {
    return popoverColors(schemeOf(widget));
}

QFont popoverFont(const QFont& base, int pixelSize, QFont::Weight weight) {
    QFont font = base;
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}

}  // namespace corvane
