#pragma once

#include <QColor>
#include <QImage>
#include <QString>

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>

#include "CorvaneShared/MeterLayout.h"

namespace corvane {

/// Corvane's own monochrome symbols, compiled into the program from resources/symbols/ and
/// looked up by symbol name ("cpu", "battery.100"). Each file is drawn for the label point size
/// (its width and height in points) in black, and tinted when it is drawn. Sizes and rendered
/// images are cached by name for the life of the process: the meters redraw every second.
/// Main thread only.
class SvgSymbols final : public SymbolCatalog {
public:
    /// The one set of the process.
    static SvgSymbols& shared();

    /// The symbol's size in points; absent when there is no symbol of that name.
    std::optional<SymbolSize> imageSize(std::string_view name) const override;
    /// The symbol in `color`, `scale` times its size in points, at `devicePixelRatio` (so its
    /// pixels are scale × size × ratio, rounded up); a null image when there is no symbol of
    /// that name.
    QImage image(std::string_view name, const QColor& color, qreal devicePixelRatio,
                 qreal scale = 1) const;

private:
    SvgSymbols() = default;

    using ImageKey = std::tuple<std::string, QRgb, qreal, qreal>;
    mutable std::map<std::string, std::optional<SymbolSize>, std::less<>> symbolSizes;
    mutable std::map<ImageKey, QImage> renderedSymbols;
};

/// The resource path of a symbol (":/symbols/cpu.svg").
QString symbolPath(std::string_view name);

}  // namespace corvane
