#include "CorvaneShared/MeterAppearance.h"

#include <algorithm>
#include <array>

#include "Foundation/EnumNames.h"

namespace corvane {

namespace {

constexpr std::array<EnumName<MeterLabelStyle>, 2> labelStyleNames{{
    {MeterLabelStyle::icons, "icons", "Icons"},
    {MeterLabelStyle::letters, "letters", "Letters"},
}};

constexpr std::array<EnumName<MeterShape>, 2> shapeNames{{
    {MeterShape::pill, "pill", "Pill"},
    {MeterShape::square, "square", "Square"},
}};

constexpr std::array<EnumName<MeterStyle>, 3> styleNames{{
    {MeterStyle::bars, "bars", "Bars"},
    {MeterStyle::wave, "wave", "Wave"},
    {MeterStyle::compact, "compact", "Compact"},
}};

// A square meter's fill keeps its corners just soft enough not to look jagged at menu-bar size.
constexpr double squareFillRadius = 1.5;

}  // namespace

std::optional<MeterLabelStyle> meterLabelStyleFromRaw(std::string_view raw) {
    return enumFromRaw(labelStyleNames, raw);
}
std::optional<MeterShape> meterShapeFromRaw(std::string_view raw) {
    return enumFromRaw(shapeNames, raw);
}
std::optional<MeterStyle> meterStyleFromRaw(std::string_view raw) {
    return enumFromRaw(styleNames, raw);
}

std::string_view rawValue(MeterLabelStyle style) {
    return enumName(labelStyleNames, style).raw;
}
std::string_view rawValue(MeterShape shape) {
    return enumName(shapeNames, shape).raw;
}
std::string_view rawValue(MeterStyle style) {
    return enumName(styleNames, style).raw;
}

std::string title(MeterLabelStyle style, const TextLookup& translate) {
    return translate(enumName(labelStyleNames, style).title);
}
std::string title(MeterShape shape, const TextLookup& translate) {
    return translate(enumName(shapeNames, shape).title);
}
std::string title(MeterStyle style, const TextLookup& translate) {
    return translate(enumName(styleNames, style).title);
}

double frameRadius(MeterShape shape, double square, double pill) {
    return shape == MeterShape::square ? square : pill;
}

double fillRadius(MeterShape shape, double width, double height) {
    const double halfShorterSide = std::max(0.0, std::min(width, height) / 2);
    return shape == MeterShape::square ? std::min(squareFillRadius, halfShorterSide)
                                       : halfShorterSide;
}

}  // namespace corvane
